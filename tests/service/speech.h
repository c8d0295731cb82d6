// Speech for tests: recorded people, and a synthetic voice.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quillo::service {

// 16 kHz mono.
using Samples = std::vector<std::int16_t>;

// A recording of the package pocketsphinx-testdata, as "cards/001.wav".
Samples recordedSpeech(const std::string& name);
// English text in a synthetic voice that the recogniser understands well.
Samples spoken(const std::string& text);
Samples silence(double seconds);
// Uniform noise, the same each time.
Samples noise(double seconds);
Samples joinedSamples(const std::vector<Samples>& parts);

// Samples of several channels alternate.
std::string wav(const Samples& samples, std::uint32_t rate = 16'000, std::uint32_t channels = 1);

// As the program records on the real desktop.
std::string m4a(const Samples& samples);

}  // namespace quillo::service
