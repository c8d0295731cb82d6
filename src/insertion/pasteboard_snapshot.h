// A complete copy of the clipboard, so that it comes back as it was.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/main_thread.h"
#include "base/time.h"
#include "platform/pasteboard.h"

namespace quillo {

// Empty for an empty clipboard.
using PasteboardSnapshot = std::vector<PasteboardItem>;

// Both are tested before each read, so the last read may go beyond them.
inline constexpr std::uint64_t snapshotByteLimit = 67'108'863;
inline constexpr Duration snapshotTimeLimit = std::chrono::milliseconds(800);

// Nothing when the clipboard is too large or too slow to copy. Reads every type of every item,
// which may block for a while; types without data and items without types are left out.
std::optional<PasteboardSnapshot> snapshotPasteboard(const Pasteboard& pasteboard,
                                                     const MainThread& mainThread);

// Takes the clipboard, also to leave it empty.
void restorePasteboard(Pasteboard& pasteboard, const PasteboardSnapshot& snapshot);

}  // namespace quillo
