#include "api/murmex_api.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "api/api_error.h"
#include "hosts/simulated/simulated_desktop.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using simulated::Failure;
using simulated::NotHTTP;
using simulated::RecordedRequest;
using simulated::Reply;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

const ClientIdentity ada{"mx_ada", "qd_1"};

class MurmexAPITest : public testing::Test {
 protected:
  ~MurmexAPITest() override {
    desktop_.abandonTasks();
    EXPECT_EQ(desktop_.newLiveFrames(), 0);
  }

  // What `task` throws as an APIError; fails when it does not.
  template <class T>
  APIError errorOf(Task<T> task) {
    try {
      desktop_.await(std::move(task));
    } catch (const APIError& error) {
      return error;
    }
    ADD_FAILURE() << "no APIError was thrown";
    return APIError::invalidResponse();
  }

  simulated::SimulatedDesktop desktop_;
  simulated::ScriptedNetwork& network_ = desktop_.network();
  MurmexAPI api_{desktop_.mainThread(), network_,
                 desktop_.machine(),    desktop_.random(),
                 desktop_.systemLog(),  {"https://backend.test", "anon"}};
};

// --- What is sent ---

struct FormCase {
  const char* name;
  TranscribeArguments arguments;
  std::string body;  // with B for the boundary
};

std::string formField(const std::string& name, const std::string& value) {
  return "--B\r\nContent-Disposition: form-data; name=\"" + name + "\"\r\n\r\n" + value + "\r\n";
}
std::string formFile(const std::string& filename, const std::string& type,
                     const std::string& bytes) {
  return "--B\r\nContent-Disposition: form-data; name=\"file\"; filename=\"" + filename +
         "\"\r\nContent-Type: " + type + "\r\n\r\n" + bytes + "\r\n";
}

class TranscribeFormTest : public MurmexAPITest, public testing::WithParamInterface<FormCase> {};

TEST_P(TranscribeFormTest, HasExactlyTheFieldsOfItsCaller) {
  network_.reply("/transcribe", Reply{.body = R"({"text":"hello","duration":1})"});
  EXPECT_EQ(desktop_.await(api_.transcribe(GetParam().arguments)).text, "hello");

  const RecordedRequest request = network_.requestsTo("/transcribe").at(0);
  const std::string type = request.header("Content-Type").value();
  const std::string boundary = type.substr(type.find('=') + 1);
  EXPECT_EQ(type, "multipart/form-data; boundary=" + boundary);
  EXPECT_EQ(boundary.size(), 36u);
  std::string body = request.body;
  for (auto at = body.find(boundary); at != std::string::npos; at = body.find(boundary))
    body.replace(at, boundary.size(), "B");
  EXPECT_EQ(body, GetParam().body);
  EXPECT_THAT(desktop_.systemLog().standardOutput(),
              ElementsAre("[Quillo API] Sending transcribe request...",
                          "[Quillo API] Request body size: " + std::to_string(request.body.size()) +
                              " bytes"));
}

const FormCase formCases[] = {
    {"RollingSegment",
     {.audioData = std::string("\0\r\n--B", 6),
      .filename = "part-2.m4a",
      .language = "auto",
      .identity = ada,
      .durationMinutes = 0.125,
      .vocabulary = {" Quillo ", "\n", "naïve"},
      .sessionId = "S",
      .segmentIndex = 2,
      .segmentKind = "chunk",
      .previousText = "and then"},
     formFile("part-2.m4a", "audio/mp4", std::string("\0\r\n--B", 6)) +
         formField("durationMinutes", "0.125") + formField("language", "auto") +
         formField("vocabulary", "Quillo, naïve") + formField("sessionId", "S") +
         formField("segmentIndex", "2") + formField("segmentKind", "chunk") +
         formField("previousText", "and then") + "--B--\r\n"},
    {"FirstSegmentHasNoPreviousText",
     {.audioData = "a",
      .filename = "part-0.m4a",
      .identity = ada,
      .durationMinutes = 1.0 / 60,
      .sessionId = "S",
      .segmentIndex = 0,
      .segmentKind = "chunk",
      .previousText = ""},
     formFile("part-0.m4a", "audio/mp4", "a") +
         formField("durationMinutes", "0.016666666666666666") + formField("sessionId", "S") +
         formField("segmentIndex", "0") + formField("segmentKind", "chunk") + "--B--\r\n"},
    {"WholeFileAfterSegments",
     {.audioData = "a",
      .filename = "all.m4a",
      .language = "de",
      .identity = ada,
      .durationMinutes = 1,
      .sessionId = "S",
      .segmentKind = "full"},
     formFile("all.m4a", "audio/mp4", "a") + formField("durationMinutes", "1.0") +
         formField("language", "de") + formField("sessionId", "S") +
         formField("segmentKind", "full") + "--B--\r\n"},
    {"WholeFileAlone",
     {.audioData = "a",
      .filename = "old.wav",
      .language = "en-US",
      .identity = ada,
      .durationMinutes = 2,
      .vocabulary = {" ", "\t\n"}},
     formFile("old.wav", "audio/wav", "a") + formField("durationMinutes", "2.0") +
         formField("language", "en-US") + "--B--\r\n"},
};
INSTANTIATE_TEST_SUITE_P(Callers, TranscribeFormTest, testing::ValuesIn(formCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(MurmexAPITest, HeadersSayWhoAsksInOrder) {
  desktop_.machine().setPlatformUUID("HW");
  network_.reply("/transform", Reply{.body = R"({"text":"","charactersUsed":0})"});
  network_.reply("/get-config", Reply{.body = R"({"plans":[]})"});
  network_.reply("/submit-feedback", Reply{.body = "thanks"});
  desktop_.await(api_.transform({}, ada));
  desktop_.await(api_.getConfig("qd_1"));
  desktop_.machine().setPlatformUUID("");
  desktop_.await(api_.submitFeedback({"m", "issue", "Billing", "Quillo Mac 1.0", "14.5"}, ada));

  const auto& requests = network_.requests();
  ASSERT_EQ(requests.size(), 3u);
  EXPECT_EQ(requests[0].method + " " + requests[0].url,
            "POST https://backend.test/functions/v1/transform");
  EXPECT_THAT(
      requests[0].headers,
      ElementsAre(Pair("apikey", "anon"), Pair("Authorization", "Bearer anon"),
                  Pair("Content-Type", "application/json"), Pair("X-Quillo-API-Key", "mx_ada"),
                  Pair("X-Quillo-Device-ID", "qd_1"), Pair("X-Quillo-Client", "macos-app"),
                  Pair("X-Quillo-Hardware-ID", "HW")));
  EXPECT_EQ(requests[1].method, "GET");
  EXPECT_THAT(requests[1].headers,
              ElementsAre(Pair("apikey", "anon"), Pair("Authorization", "Bearer anon"),
                          Pair("X-Quillo-Device-ID", "qd_1"), Pair("X-Quillo-Client", "macos-app"),
                          Pair("X-Quillo-Hardware-ID", "HW")));
  EXPECT_EQ(requests[2].header("X-Quillo-Hardware-ID"), std::nullopt);
  EXPECT_EQ(requests[2].body, R"({"message":"m","mode":"issue","requestType":"Billing",)"
                              R"("app":"Quillo Mac 1.0","os":"14.5"})");
}

TEST_F(MurmexAPITest, TheWarmUpOpensTheConnectionThatTheAudioUses) {
  network_.setConnectTime(200ms);
  api_.warmUp();
  desktop_.runFor(1s);
  ASSERT_EQ(network_.requests().size(), 2u);
  EXPECT_EQ(network_.requests()[0].url, "https://backend.test/functions/v1/transcribe");
  EXPECT_EQ(network_.requests()[1].url, "https://backend.test/functions/v1/transform");
  for (const RecordedRequest& request : network_.requests()) {
    EXPECT_EQ(request.method, "OPTIONS");
    EXPECT_THAT(request.headers,
                ElementsAre(Pair("apikey", "anon"), Pair("Authorization", "Bearer anon")));
  }
  network_.reply("/transcribe", Reply{.body = R"({"text":"","duration":0})"});
  desktop_.await(api_.transcribe({.identity = ada}));
  EXPECT_TRUE(network_.requests().back().usedWarmConnection);

  network_.setOnline(false);
  api_.warmUp();
  desktop_.runUntilIdle();  // gives up after its time-out, and nobody hears of it
}

// --- The retry loop ---

struct RetryCase {
  const char* name;
  std::vector<simulated::Answer> answers;
  Duration waited;
  std::string outcome;  // the text of a reply, or the sentence of an error
};

class RetryTest : public MurmexAPITest, public testing::WithParamInterface<RetryCase> {};

TEST_P(RetryTest, EndsAsItShould) {
  for (const auto& answer : GetParam().answers) network_.reply("/transform", answer);
  const MonotonicTime begin = desktop_.now();
  std::string outcome;
  try {
    outcome = desktop_.await(api_.transform({}, ada)).text;
  } catch (const APIError& error) {
    outcome = error.errorDescription().value();
  }
  EXPECT_EQ(outcome, GetParam().outcome);
  EXPECT_EQ(desktop_.now() - begin, GetParam().waited);
  EXPECT_FALSE(network_.hasQueuedAnswers());
}

const Reply done{.body = R"({"text":"done","charactersUsed":4})"};
const Failure offline{URLErrorCode::notConnectedToInternet};
const RetryCase retryCases[] = {
    {"ServerFaultOnce", {Reply{.status = 503}, done}, 600ms, "done"},
    {"ServerFaultAlways", {Reply{500, "a"}, Reply{502, "b"}, Reply{503, "third"}}, 1800ms, "third"},
    {"MixedFaults", {Failure{URLErrorCode::timedOut}, Reply{599, "x"}, done}, 1800ms, "done"},
    {"ClientFault", {Reply{404, R"({"error":"no such thing"})"}}, 0ms, "no such thing"},
    {"NotModified", {Reply{304, ""}}, 0ms, "Something went wrong. Please try again."},
    {"OffLine",
     {offline, offline, offline},
     1800ms,
     "No internet connection. Check Wi-Fi or cellular data."},
    {"NotWorthRetrying",
     {Failure{URLErrorCode::badServerResponse}},
     0ms,
     "Connection problem. Please try again."},
    {"NotHTTP", {NotHTTP{}}, 0ms, "Couldn't reach the server. Please try again."},
    {"InvalidText", {Reply{400, "\xff\xfe"}}, 0ms, "Unknown error"},
};
INSTANTIATE_TEST_SUITE_P(Faults, RetryTest, testing::ValuesIn(retryCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(MurmexAPITest, EveryFaultIsInTheSystemLog) {
  network_.fail("/get-usage", URLErrorCode::networkConnectionLost);
  network_.reply("/get-usage", Reply{500, "\xff"});
  network_.reply("/get-usage", Reply{429, std::string(400, 'x')});
  EXPECT_EQ(errorOf(api_.getUsage(ada)).status(), 429);
  EXPECT_THAT(desktop_.systemLog().lines(),
              ElementsAre("[Quillo] get-usage network error (attempt 0): NSURLErrorDomain code "
                          "-1005 — The network connection was lost.",
                          "[Quillo] get-usage HTTP 500 (attempt 1) — retrying. Body: ",
                          "[Quillo] get-usage HTTP 429. Body: " + std::string(300, 'x')));
}

TEST_F(MurmexAPITest, CancellationEndsTheTransferOrTheWaitAtOnce) {
  network_.reply("/get-config", simulated::Stall{});
  auto transfer = start(desktop_.mainThread(), api_.getConfig("d"));
  desktop_.runFor(1s);
  transfer.cancel();
  const APIError error = errorOf(transfer.value());
  EXPECT_EQ(errorCodeOf(error.underlying()).code, static_cast<int>(URLErrorCode::cancelled));

  network_.reply("/get-config", Reply{.status = 503});
  auto wait = start(desktop_.mainThread(), api_.getConfig("d"));
  desktop_.runFor(300ms);
  wait.cancel();
  EXPECT_THROW(desktop_.await(wait.value()), CancellationError);
  EXPECT_EQ(network_.requestsTo("/get-config").size(), 2u);
}

TEST_F(MurmexAPITest, AReplyThatIsNotTheRecordIsADecodingError) {
  for (const char* body : {"<html>It works</html>", "[]", R"({"text":"cut o)", R"({"text":"a"})",
                           R"({"text":"a","duration":"1"})", R"({"text":null,"duration":1})"}) {
    network_.reply("/transcribe", Reply{.body = body});
    EXPECT_THROW(desktop_.await(api_.transcribe({.identity = ada})), DecodingError) << body;
  }
}

}  // namespace
}  // namespace quillo
