// AAC in an MPEG-4 file, written by the FFmpeg libraries.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "hosts/linux/posix/file_descriptor.h"
#include "platform/audio_buffer.h"
#include "platform/audio_file.h"
#include "platform/file_path.h"

struct AVCodecContext;
struct AVFormatContext;
struct AVFrame;
struct AVIOContext;
struct AVPacket;

namespace quillo::linux_host {

// The file is fragmented (ISO/IEC 14496-12, 8.8): each second is complete on its own, so a crash
// costs no more than the last one, and finishing has nothing to rewrite. It always ends with a
// whole fragment; one that finds no room on the disk waits in memory and is written when there is
// room.
class FFmpegAudioFile final : public AudioFile {
 public:
  // When the file or its encoder cannot be made, there is no file.
  static Result<std::unique_ptr<AudioFile>, Problem> create(const FilePath& path,
                                                            const AudioFileSettings& settings);
  ~FFmpegAudioFile() override;

  AudioFormat processingFormat() const override;
  Result<void, AudioFileFailure> write(const AudioBuffer& buffer) override;

 private:
  explicit FFmpegAudioFile(const AudioFileSettings& settings);

  enum class Rest { waits, too };  // what does not fill a frame of the encoder

  int openEncoder();
  int openMuxer();
  int encodeQueued(Rest rest);
  int encodeFrame(std::size_t first, std::size_t count);
  int encode(AVFrame* frame);
  bool flushFragments();

  static int collect(void* self, unsigned char* bytes, int size);

  const AudioFileSettings settings_;
  FileDescriptor file_;
  std::int64_t written_ = 0;  // bytes of whole fragments in the file
  std::string unwritten_;     // bytes of fragments that are not in the file yet
  AVCodecContext* encoder_ = nullptr;
  AVFormatContext* muxer_ = nullptr;
  AVIOContext* output_ = nullptr;
  AVFrame* frame_ = nullptr;
  AVPacket* packet_ = nullptr;
  std::vector<std::vector<float>> queued_;  // a channel each: what does not fill a frame yet
  std::int64_t framesEncoded_ = 0;
};

}  // namespace quillo::linux_host
