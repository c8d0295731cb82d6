#include "hosts/linux/session/bundle.h"

#include <filesystem>
#include <string_view>

namespace quillo::linux_host {

BundleInformation bundleOfThisProgram() {
  constexpr std::string_view googleClientID = QUILLO_GOOGLE_CLIENT_ID;
  BundleInformation bundle;
  bundle.bundleIdentifier = "com.murmex.mac";
  bundle.shortVersion = QUILLO_VERSION;
  bundle.version = QUILLO_VERSION;
  std::error_code error;
  bundle.bundlePath = std::filesystem::read_symlink("/proc/self/exe", error).string();
  if (!googleClientID.empty()) bundle.googleClientID = googleClientID;
  return bundle;
}

}  // namespace quillo::linux_host
