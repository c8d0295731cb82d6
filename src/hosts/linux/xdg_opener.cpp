#include "hosts/linux/xdg_opener.h"

#include <QProcess>
#include <QUrl>
#include <csignal>

namespace quillo::linux_host {
namespace {

// The child must not inherit the signals that this program keeps for its own loop.
void unblockSignals() {
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

bool open(const QString& address) {
  QProcess program;
  program.setProgram("xdg-open");
  program.setArguments({address});
  program.setChildProcessModifier(unblockSignals);
  return program.startDetached();
}

}  // namespace

bool XdgOpener::openFile(const FilePath& path) {
  std::error_code error;
  const FilePath whole = std::filesystem::absolute(path, error);
  return !error && open(QString::fromStdString(whole.string()));
}

bool XdgOpener::openURL(std::string_view url) {
  const auto address = QString::fromUtf8(url.data(), static_cast<qsizetype>(url.size()));
  // Without a scheme it could be taken for an option or a file.
  const QUrl parsed(address, QUrl::StrictMode);
  return parsed.isValid() && !parsed.scheme().isEmpty() && open(address);
}

}  // namespace quillo::linux_host
