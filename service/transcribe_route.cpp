#include "service/transcribe_route.h"

#include <charconv>
#include <cmath>
#include <future>
#include <span>

#include "base/text.h"
#include "service/audio_decoder.h"
#include "service/caller.h"
#include "service/languages.h"
#include "service/service_error.h"
#include "service/terms.h"
#include "service/utterances.h"
#include "service/vocabulary.h"

namespace quillo::service {
namespace {

constexpr std::size_t maximumSessionIdBytes = 200;
// A client's recorder stops a moment after the plan's limit, and is spoken to meanwhile.
constexpr double latenessSeconds = 5.0;
// A shorter recording is not worth a second recogniser's time.
constexpr std::size_t leastSharedUtterances = 4;

std::optional<std::string> field(const HttpRequest& request, const std::string& name) {
  const auto found = request.form.find(name);
  if (found == request.form.end() || found->second.content.empty()) return std::nullopt;
  return found->second.content;
}

std::string demandField(const HttpRequest& request, const std::string& name) {
  auto value = field(request, name);
  if (!value) throw badRequest("The form field " + name + " is missing.");
  return *std::move(value);
}

// Nothing when the text is not wholly a number.
template <class Number>
std::optional<Number> numberFrom(const std::string& text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

// The recording's length as the client has it. It is checked but not counted: the service counts
// what it hears.
void demandDuration(const HttpRequest& request) {
  const auto minutes = numberFrom<double>(demandField(request, "durationMinutes"));
  if (!minutes || !std::isfinite(*minutes) || *minutes < 0)
    throw badRequest("The form field durationMinutes is not a duration.");
}

void demandEnglish(const HttpRequest& request) {
  const std::string language = field(request, "language").value_or("auto");
  if (language == "auto") return;
  const auto code = languageFrom(language);
  if (!code) throw badRequest("The form field language names no language.");
  if (*code != "en")
    throw ServiceError(422, "language_unavailable",
                       "The development service understands spoken English only, not " +
                           languageName(*code) + ".");
}

std::int64_t demandSegmentIndex(const HttpRequest& request) {
  const auto index = numberFrom<std::int64_t>(demandField(request, "segmentIndex"));
  if (!index || *index < 0) throw badRequest("The form field segmentIndex is not an index.");
  return *index;
}

std::optional<SessionPart> sessionPartOf(const HttpRequest& request) {
  const auto kind = field(request, "segmentKind");
  if (kind && *kind != "chunk" && *kind != "full")
    throw badRequest("The form field segmentKind is neither chunk nor full.");
  if (!kind && !field(request, "sessionId")) return std::nullopt;
  const std::string session = demandField(request, "sessionId");
  if (session.size() > maximumSessionIdBytes)
    throw badRequest("The form field sessionId is too long.");
  const bool whole = kind ? *kind == "full" : !field(request, "segmentIndex");
  if (whole) return SessionPart{session, std::nullopt};
  return SessionPart{session, demandSegmentIndex(request)};
}

Audio decoded(const std::string& file, std::int64_t maximumSeconds) {
  const double longest = static_cast<double>(maximumSeconds) + latenessSeconds;
  Audio audio;
  try {
    audio = decodeAudio(file, longest);
  } catch (const UndecodableAudio& error) {
    throw ServiceError(422, "undecodable_audio", error.what());
  }
  if (audio.seconds() > longest)
    throw ServiceError(413, "recording_too_long",
                       "The recording is too large: the plan allows " +
                           std::to_string(maximumSeconds) + " seconds.");
  return audio;
}

std::string spelled(const std::string& text, const std::vector<std::string>& vocabulary,
                    const Dictionary& english) {
  std::vector<Term> terms;
  for (const std::string& term : vocabulary) terms.push_back(preserved(term));
  return Terms(terms, english).applied(text);
}

// A long recording is shared with the recognisers that nobody else wants now.
std::string recognised(std::span<const std::int16_t> samples,
                       const std::vector<std::string>& vocabulary,
                       const RecogniserPool::Lease& recogniser, RecogniserPool& pool) {
  const auto pieces = utterances(samples);
  const auto helper = pieces.size() < leastSharedUtterances ? nullptr : pool.acquireIdle();
  if (!helper) return recogniser->transcribe(samples, vocabulary);

  const auto middle = static_cast<std::size_t>(pieces[pieces.size() / 2].data() - samples.data());
  std::future<std::string> second = std::async(std::launch::async, [&] {
    return recognised(samples.subspan(middle), vocabulary, *helper, pool);
  });
  const std::string first = recognised(samples.first(middle), vocabulary, recogniser, pool);
  return trimmed(first + " " + second.get());
}

HttpReply transcribe(const HttpRequest& request, const TranscribeParts& parts) {
  const Caller caller = identifyCaller(request, parts.accounts);
  const std::string file = demandField(request, "file");
  demandDuration(request);
  demandEnglish(request);
  const auto part = sessionPartOf(request);
  const auto vocabulary = vocabularyFrom(field(request, "vocabulary").value_or(""));

  const Audio audio = decoded(file, parts.plans.plan(caller.plan).maximumRecordingSeconds);
  // Counted only once a recogniser is at hand, so that a busy service costs the caller nothing.
  const auto recogniser = parts.recognisers.acquire();
  parts.metering.countSpeech(caller, audio.seconds(), part);
  const std::string text = recognised(audio.samples, vocabulary, recogniser, parts.recognisers);
  return {200, Json{{"text", spelled(text, vocabulary, parts.dictionaries.english())},
                    {"duration", audio.seconds()}}};
}

}  // namespace

void addTranscribeRoute(HttpServer& server, TranscribeParts parts) {
  server.route("POST", "/functions/v1/transcribe",
               [parts](const HttpRequest& request) { return transcribe(request, parts); });
}

}  // namespace quillo::service
