// The pasteboard on the X server's clipboard selection.
#pragma once

#include "hosts/linux/x11/clipboard/x11_clipboard.h"
#include "platform/pasteboard.h"

namespace quillo::linux_host {

// Main thread. The clipboard of X has one item, so that of several written ones the first counts.
//
// contents() asks for every form at once: the data are there when it returns. It waits until all
// have come, but a single one that its owner is still making after 0.7 seconds is left to data(),
// which waits for it until two seconds have passed. After 0.8 seconds what has not come is listed
// without data, and at least one type is: whoever copies the contents within that time sees that it
// is over. A form that came late is known by its target alone, not by a type or format of its own.
class X11Pasteboard final : public Pasteboard {
 public:
  // `clipboard` outlives this.
  explicit X11Pasteboard(X11Clipboard& clipboard) : clipboard_(clipboard) {}

  std::int64_t changeCount() const override { return clipboard_.changeCount(); }
  std::unique_ptr<PasteboardContents> contents() const override;
  void clearContents() override { clipboard_.takeOwnership(); }
  Result<void, PasteboardFailure> writeItems(const std::vector<PasteboardItem>& items) override;
  // Reads the text alone.
  Result<std::string, PasteboardFailure> string() const override;
  // The text that is selected somewhere, whichever program has it. Blocks like string().
  std::optional<std::string> selectedText() const;

 private:
  X11Clipboard& clipboard_;
};

}  // namespace quillo::linux_host
