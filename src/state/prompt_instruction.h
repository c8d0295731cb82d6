// The user's instructions: styles that always apply, and saved prompts that apply on demand.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/random.h"
#include "state/setting.h"

namespace quillo {

struct PromptInstruction {
  std::string id;    // UUID in canonical upper-case form
  std::string kind;  // "style", "saved", or empty in records of older versions
  std::string name;
  std::string text;
  bool voice = true;    // a style applies while dictating
  bool bubble = false;  // a style applies to the bubble's Fix and Improve
  bool promptOnly = false;
};

// Whether an instruction is a saved prompt; without a kind its switches and its name tell.
bool countsAsSaved(const PromptInstruction& instruction);

// As the Formatting panel adds them.
PromptInstruction newStyleInstruction(Random& random);
PromptInstruction newSavedPrompt(Random& random);

enum class PromptUse { dictation, bubble };

struct StylePrompt {
  std::string text;
  std::string promptMode;  // always "augment"
};

// All styles for `use` as one prompt; nothing when there are none.
std::optional<StylePrompt> joinedStyles(const std::vector<PromptInstruction>& instructions,
                                        PromptUse use);
// The saved prompts that have a text, in their order.
std::vector<PromptInstruction> savedPromptsAmong(
    const std::vector<PromptInstruction>& instructions);

// A JSON array of objects.
Bytes encodeInstructions(const std::vector<PromptInstruction>& instructions);
// Field by field: what is missing or mistyped gets its default, a missing identifier empty text.
// Nothing when this is no array of objects.
std::optional<std::vector<PromptInstruction>> decodeInstructions(std::string_view json);

// The stored instructions, each with its kind, or the one prompt of an older version. Nothing is
// written back.
std::vector<PromptInstruction> loadInstructions(const UserDefaults& defaults, const char* key,
                                                Random& random);

template <>
struct StoredForm<std::vector<PromptInstruction>> {
  // Nothing also when one has no identifier.
  static std::optional<std::vector<PromptInstruction>> read(const UserDefaults& defaults,
                                                            std::string_view key);
  static void write(UserDefaults& defaults, std::string_view key,
                    const std::vector<PromptInstruction>& instructions) {
    defaults.setData(key, encodeInstructions(instructions));
  }
};

}  // namespace quillo
