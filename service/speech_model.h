// Where the package pocketsphinx-en-us keeps the English model.
#pragma once

namespace quillo::service::speech_model {

inline constexpr const char* acoustics = "/usr/share/pocketsphinx/model/en-us/en-us";
inline constexpr const char* language = "/usr/share/pocketsphinx/model/en-us/en-us.lm.bin";
inline constexpr const char* dictionary = "/usr/share/pocketsphinx/model/en-us/cmudict-en-us.dict";

}  // namespace quillo::service::speech_model
