// The clipboard.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/bytes.h"
#include "base/result.h"

namespace quillo {

inline constexpr const char* pasteboardTypeString = "public.utf8-plain-text";

// Whether what is written is the user's, or only passes through on its way into an application.
// Hosts ask clipboard managers not to keep what is lent.
enum class ClipboardUse { kept, lent };

// An item as this program holds it: types in order of preference, each with its data.
struct PasteboardItem {
  std::vector<std::pair<std::string, Bytes>> representations;
  ClipboardUse use = ClipboardUse::kept;

  friend bool operator==(const PasteboardItem&, const PasteboardItem&) = default;
};

enum class PasteboardFailure {
  absent,    // the owner has no such data, or is gone, or nobody owns the clipboard
  noAnswer,  // the owner has such data and did not give them in time
  notOwner,  // the clipboard is not this program's to write
};

// What another program (or this one) offers now. The owner may be slow or gone. When it is asked
// for the data is the host's affair: on the real desktop all of them in contents(), at once, and
// only a single one that is still missing then is waited for in data(); on the simulated one each
// in data(). Either way a reading that is under way goes on while the owner may still answer, for
// two seconds at most.
class PasteboardContents {
 public:
  virtual ~PasteboardContents() = default;
  virtual std::size_t itemCount() const = 0;
  virtual std::vector<std::string> types(std::size_t item) const = 0;
  // Blocks for two seconds at most; for three when the window system hangs.
  virtual Result<Bytes, PasteboardFailure> data(std::size_t item, std::string_view type) const = 0;
};

// Main thread. A call that changes the clipboard blocks for a second at most, when the window
// system hangs; others for as long as is said.
class Pasteboard {
 public:
  virtual ~Pasteboard() = default;

  // Rises with every change of ownership, whoever makes it. Does not block.
  virtual std::int64_t changeCount() const = 0;
  // Never null. Blocks for 0.8 seconds at most, for 1.8 when the window system hangs: an owner that
  // has not said by then what it has is given with types that have no data.
  virtual std::unique_ptr<PasteboardContents> contents() const = 0;
  // Takes ownership of an empty clipboard; the change count rises by one.
  virtual void clearContents() = 0;
  // After clearContents(), without another rise.
  virtual Result<void, PasteboardFailure> writeItems(const std::vector<PasteboardItem>& items) = 0;

  Result<void, PasteboardFailure> setString(std::string_view text,
                                            ClipboardUse use = ClipboardUse::kept) {
    return writeItems({PasteboardItem{{{pasteboardTypeString, Bytes(text)}}, use}});
  }
  // The plain text of the first item that has one. A host may read it alone. Blocks for two seconds
  // at most; for three when the window system hangs.
  virtual Result<std::string, PasteboardFailure> string() const {
    const auto now = contents();
    for (std::size_t item = 0; item < now->itemCount(); ++item) {
      for (const std::string& type : now->types(item)) {
        if (type == pasteboardTypeString) return now->data(item, type);
      }
    }
    return PasteboardFailure::absent;
  }
};

}  // namespace quillo
