#include "hosts/linux/ffmpeg/audio_codec_module.h"

#include <dlfcn.h>

#include <filesystem>

namespace quillo::linux_host {
namespace {

// Beside the folder of the programs, both where they are built and where they are installed.
FilePath modulePath() {
  std::error_code error;
  const FilePath program = std::filesystem::read_symlink("/proc/self/exe", error);
  return program.parent_path().parent_path() / "lib" / "quillo" / "ffmpeg.so";
}

}  // namespace

void AudioCodecModule::prepare() {
  loading_ = std::jthread([this] { codecs(); });
}

AudioCodecs* AudioCodecModule::codecs() {
  std::call_once(isLoaded_, [this] { load(); });
  return codecs_;
}

void AudioCodecModule::load() {
  void* const module = dlopen(modulePath().c_str(), RTLD_LAZY | RTLD_LOCAL);
  void* const entry = module ? dlsym(module, "quilloAudioCodecs") : nullptr;
  if (entry)
    codecs_ = reinterpret_cast<AudioCodecs* (*)()>(entry)();
  else
    problem_ = dlerror();
}

}  // namespace quillo::linux_host
