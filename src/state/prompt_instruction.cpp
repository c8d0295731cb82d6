#include "state/prompt_instruction.h"

#include <algorithm>
#include <iterator>

#include "base/text.h"
#include "state/lenient_records.h"

namespace quillo {
namespace {

constexpr const char* styleKind = "style";
constexpr const char* savedKind = "saved";

PromptInstruction decodeInstruction(const Json& object) {
  return {
      .id = lenientId(object),
      .kind = lenientText(object, "kind").value_or(""),
      .name = lenientText(object, "name").value_or(""),
      .text = lenientText(object, "text").value_or(""),
      .voice = lenientBoolean(object, "voice").value_or(true),
      .bubble = lenientBoolean(object, "bubble").value_or(false),
      .promptOnly = lenientBoolean(object, "promptOnly").value_or(false),
  };
}

Json encodeInstruction(const PromptInstruction& instruction) {
  return {
      {"id", instruction.id},
      {"kind", instruction.kind},
      {"name", instruction.name},
      {"text", instruction.text},
      {"voice", instruction.voice},
      {"bubble", instruction.bubble},
      {"promptOnly", instruction.promptOnly},
  };
}

// One prompt in two keys, from the time when there was only one.
std::vector<PromptInstruction> olderPrompt(const UserDefaults& defaults, Random& random) {
  const std::string text = trimmed(defaults.text("customPrompt").value_or(""));
  if (text.empty()) return {};
  PromptInstruction instruction{.id = random.newUuid(), .text = text};
  instruction.promptOnly = defaults.text("promptMode") == "promptOnly";
  return {instruction};
}

}  // namespace

bool countsAsSaved(const PromptInstruction& instruction) {
  if (!instruction.kind.empty()) return instruction.kind == savedKind;
  return instruction.bubble && instruction.promptOnly && !isBlank(instruction.name);
}

PromptInstruction newStyleInstruction(Random& random) {
  return {.id = random.newUuid(), .kind = styleKind};
}

PromptInstruction newSavedPrompt(Random& random) {
  return {.id = random.newUuid(),
          .kind = savedKind,
          .voice = false,
          .bubble = true,
          .promptOnly = true};
}

std::optional<StylePrompt> joinedStyles(const std::vector<PromptInstruction>& instructions,
                                        PromptUse use) {
  std::vector<std::string> styles;
  for (const PromptInstruction& each : instructions) {
    const bool applies = use == PromptUse::bubble ? each.bubble : each.voice;
    if (countsAsSaved(each) || !applies || isBlank(each.text)) continue;
    styles.push_back(trimmed(each.text));
  }
  if (styles.empty()) return std::nullopt;
  return StylePrompt{joined(styles, "\n"), "augment"};
}

std::vector<PromptInstruction> savedPromptsAmong(
    const std::vector<PromptInstruction>& instructions) {
  std::vector<PromptInstruction> saved;
  std::ranges::copy_if(instructions, std::back_inserter(saved), [](const PromptInstruction& each) {
    return countsAsSaved(each) && !isBlank(each.text);
  });
  return saved;
}

Bytes encodeInstructions(const std::vector<PromptInstruction>& instructions) {
  return encodeRecords(instructions, encodeInstruction);
}

std::optional<std::vector<PromptInstruction>> decodeInstructions(std::string_view json) {
  return decodeRecords<PromptInstruction>(json, decodeInstruction);
}

std::optional<std::vector<PromptInstruction>> StoredForm<std::vector<PromptInstruction>>::read(
    const UserDefaults& defaults, std::string_view key) {
  return identified(decodeInstructions(defaults.data(key).value_or("")));
}

std::vector<PromptInstruction> loadInstructions(const UserDefaults& defaults, const char* key,
                                                Random& random) {
  auto instructions = decodeInstructions(defaults.data(key).value_or(""));
  if (!instructions) return olderPrompt(defaults, random);
  identify(*instructions, random);
  for (PromptInstruction& each : *instructions) {
    if (each.kind.empty()) each.kind = countsAsSaved(each) ? savedKind : styleKind;
  }
  return *std::move(instructions);
}

}  // namespace quillo
