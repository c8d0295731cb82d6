// The pasteboard on the X server's clipboard selection.
#pragma once

#include "hosts/linux/x11/clipboard/x11_clipboard.h"
#include "platform/pasteboard.h"

namespace quillo::linux_host {

// Main thread. The clipboard of X has one item, so that of several written ones the first counts.
//
// contents() reads every form at once, for at most 0.8 seconds: the data are there when it returns.
// What did not come by then is listed without data, and at least one type is: whoever copies the
// contents within that time limit sees that the limit has passed.
class X11Pasteboard final : public Pasteboard {
 public:
  // `clipboard` outlives this.
  explicit X11Pasteboard(X11Clipboard& clipboard) : clipboard_(clipboard) {}

  std::int64_t changeCount() const override { return clipboard_.changeCount(); }
  std::unique_ptr<PasteboardContents> contents() const override;
  void clearContents() override { clipboard_.takeOwnership(); }
  bool writeItems(const std::vector<PasteboardItem>& items) override;
  // Reads the text alone.
  std::optional<std::string> string() const override;

 private:
  X11Clipboard& clipboard_;
};

}  // namespace quillo::linux_host
