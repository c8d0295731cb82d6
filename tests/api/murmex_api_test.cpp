#include "api/murmex_api.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "api/api_error.h"
#include "hosts/simulated/simulated_desktop.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
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

  // The body of the request, with B for the boundary.
  std::string formOf(TranscribeArguments arguments) {
    network_.reply("/transcribe", Reply{.body = R"({"text":"","duration":1})"});
    desktop_.await(api_.transcribe(std::move(arguments)));
    const RecordedRequest request = network_.requests().back();
    const std::string type = request.header("Content-Type").value();
    const std::string boundary = type.substr(type.find('=') + 1);
    EXPECT_EQ(type, "multipart/form-data; boundary=" + boundary);
    EXPECT_EQ(boundary.size(), 36u);
    std::string form = request.body;
    for (auto at = form.find(boundary); at != std::string::npos; at = form.find(boundary))
      form.replace(at, boundary.size(), "B");
    return form;
  }

  simulated::SimulatedDesktop desktop_;
  simulated::ScriptedNetwork& network_ = desktop_.network();
  MurmexAPI api_{desktop_.mainThread(), network_,
                 desktop_.machine(),    desktop_.random(),
                 desktop_.systemLog(),  {"https://backend.test", "anon"}};
};

// --- What is sent ---

std::string formField(const std::string& name, const std::string& value) {
  return "--B\r\nContent-Disposition: form-data; name=\"" + name + "\"\r\n\r\n" + value + "\r\n";
}
std::string formFile(const std::string& filename, const std::string& type,
                     const std::string& bytes) {
  return "--B\r\nContent-Disposition: form-data; name=\"file\"; filename=\"" + filename +
         "\"\r\nContent-Type: " + type + "\r\n\r\n" + bytes + "\r\n";
}

TEST_F(MurmexAPITest, ARecordingIsSentWithExactlyTheFieldsThatItHas) {
  const Bytes audio("\0\r\n--", 5);
  EXPECT_EQ(formOf({.audioData = audio,
                    .filename = "part-2.wav",
                    .language = "auto",
                    .durationMinutes = 0.125,
                    .vocabulary = {" Quillo ", "\n", "naïve"},
                    .sessionId = "S",
                    .segmentIndex = 2,
                    .segmentKind = "chunk",
                    .previousText = "and then"}),
            formFile("part-2.wav", "audio/wav", audio) + formField("durationMinutes", "0.125") +
                formField("language", "auto") + formField("vocabulary", "Quillo, naïve") +
                formField("sessionId", "S") + formField("segmentIndex", "2") +
                formField("segmentKind", "chunk") + formField("previousText", "and then") +
                "--B--\r\n");
  EXPECT_EQ(
      formOf({.filename = "all.m4a",
              .durationMinutes = 2,
              .vocabulary = {" ", "\t\n"},
              .sessionId = "",
              .segmentKind = "",
              .previousText = ""}),
      formFile("all.m4a", "audio/mp4", "") + formField("durationMinutes", "2.0") + "--B--\r\n");
}

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
  HeaderFields expected{{"apikey", "anon"},
                        {"Authorization", "Bearer anon"},
                        {"Content-Type", "application/json"},
                        {"X-Quillo-API-Key", "mx_ada"},
                        {"X-Quillo-Device-ID", "qd_1"},
                        {"X-Quillo-Client", "macos-app"},
                        {"X-Quillo-Hardware-ID", "HW"}};
  EXPECT_EQ(requests[0].headers, expected);
  expected.erase(expected.begin() + 2, expected.begin() + 4);
  EXPECT_EQ(requests[1].method, "GET");
  EXPECT_EQ(requests[1].headers, expected);
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

TEST_F(MurmexAPITest, FaultsThatMayPassAreTriedThreeTimesAndOthersOnce) {
  const auto expectEnd = [&](std::vector<simulated::Answer> answers, Duration waited,
                             const char* outcome) {
    SCOPED_TRACE(outcome);
    for (auto& answer : answers) network_.reply("/transform", std::move(answer));
    const MonotonicTime begin = desktop_.now();
    try {
      EXPECT_EQ(desktop_.await(api_.transform({}, ada)).text, outcome);
    } catch (const APIError& error) {
      EXPECT_EQ(error.errorDescription(), outcome);
    }
    EXPECT_EQ(desktop_.now() - begin, waited);
    EXPECT_FALSE(network_.hasQueuedAnswers());
  };
  const Reply done{.body = R"({"text":"done","charactersUsed":4})"};
  const auto failure = [](URLErrorCode code) { return simulated::Failure{code}; };
  const auto offline = failure(URLErrorCode::notConnectedToInternet);
  expectEnd({Reply{503}, done}, 600ms, "done");
  expectEnd({Reply{500, "a"}, Reply{502, "b"}, Reply{503, "third"}}, 1800ms, "third");
  expectEnd({failure(URLErrorCode::timedOut), Reply{599, "x"}, done}, 1800ms, "done");
  expectEnd({Reply{404, R"({"error":"no such thing"})"}}, 0ms, "no such thing");
  expectEnd({Reply{304}}, 0ms, "Something went wrong. Please try again.");
  expectEnd({Reply{400, "\xff\xfe"}}, 0ms, "Unknown error");
  expectEnd({offline, offline, offline}, 1800ms,
            "No internet connection. Check Wi-Fi or cellular data.");
  expectEnd({failure(URLErrorCode::badServerResponse)}, 0ms,
            "Connection problem. Please try again.");
  expectEnd({simulated::Stall{}, simulated::Stall{}, simulated::Stall{}}, 3 * 60s + 1800ms,
            "Request timed out. Please try again.");
  expectEnd({simulated::NotHTTP{}}, 0ms, "Couldn't reach the server. Please try again.");
}

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

TEST_F(MurmexAPITest, ATransferEndsWithItsCancellationOrItsTimeLimit) {
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

  network_.handle("/transcribe", [](const RecordedRequest&) { return simulated::Stall{}; });
  const MonotonicTime begin = desktop_.now();
  errorOf(api_.transcribe({.identity = ada}));
  EXPECT_EQ(desktop_.now() - begin, 3 * 90s + 1800ms);  // a recording may take longer
}

TEST_F(MurmexAPITest, AReplyThatIsNotTheRecordIsADecodingError) {
  for (const char* body :
       {"<html>It works</html>", R"({"text":"a"})", R"({"text":"a","duration":"1"})"}) {
    network_.reply("/transcribe", Reply{.body = body});
    EXPECT_THROW(desktop_.await(api_.transcribe({.identity = ada})), DecodingError) << body;
  }
}

}  // namespace
}  // namespace quillo
