#include <gtest/gtest.h>

#include <future>
#include <random>

#include "service/audio_decoder.h"
#include "service/recogniser_pool.h"
#include "service/running_service.h"
#include "service/service_error.h"
#include "service/speech.h"
#include "service/vocabulary.h"

namespace quillo::service {
namespace {

const std::string path = "/functions/v1/transcribe";

TEST(Transcribe, HearsPeople) {
  RunningService service;
  const Identity ada = guest("qd_ada");
  const Samples clubs = recordedSpeech("cards/001.wav");
  const Samples somewhere = recordedSpeech("something.raw");

  const Answer first = service.transcribe(ada, wav(clubs));
  ASSERT_EQ(first.status, 200) << first.text;
  EXPECT_EQ(first.at("text"), "ten of clubs");
  EXPECT_TRUE(first.text.starts_with(R"({"text":)")) << first.text;
  EXPECT_NEAR(first.body["duration"].get<double>(), 1.1, 0.01);

  const Answer recorded = service.transcribe(ada, m4a(somewhere), {{"language", "auto", ""}});
  EXPECT_EQ(recorded.at("text"), "go somewhere and do something");

  EXPECT_EQ(service.transcribe(ada, wav(noise(2))).at("text"), "");
  // No request leaves a trace in the one after it.
  EXPECT_EQ(service.transcribe(ada, wav(clubs)).at("text"), "ten of clubs");
  const double heard = (2 * 1.0954 + 2.999 + 2) / 60;
  EXPECT_NEAR(service.usage(ada).body["dailyMinutes"].get<double>(), heard, 0.005);
}

TEST(Transcribe, LearnsTheUsersOwnWords) {
  RunningService service;
  const std::string file = wav(spoken("we deployed kubernetes last week"));
  const std::string without = service.transcribe(guest("qd_ada"), file).at("text");
  EXPECT_EQ(without.find("ubernetes"), std::string::npos) << without;
  const Answer with =
      service.transcribe(guest("qd_ada"), file,
                         {{"vocabulary", "Kubernetes, the New York office,  , 12345, ñandú", ""}});
  EXPECT_EQ(with.at("text"), "we deployed Kubernetes last week");
}

// New words have a place among the followers of known ones, however many there are.
TEST(Recogniser, LearnsAHundredWordsAndAHundredMore) {
  Pronunciation pronunciation;
  Recogniser recogniser(pronunciation);
  const Samples speech = spoken("the company is called vorlon systems");
  for (const std::string beginning : {"zor", "pli"}) {
    std::vector<std::string> vocabulary;
    for (char a = 'a'; a <= 'j'; ++a)
      for (char b = 'a'; b <= 'j'; ++b) vocabulary.push_back(beginning + a + "m" + b + "k");
    vocabulary.push_back("Vorlon vorlon");
    EXPECT_EQ(recogniser.transcribe(speech, vocabulary), "the company is called vorlon systems");
  }
  EXPECT_EQ(recogniser.transcribe(recordedSpeech("cards/001.wav"), {}), "ten of clubs");
}

TEST(Transcribe, CountsASessionOnceAndRefusesItWithoutMinutes) {
  RunningService service;
  const Identity ada = guest("qd_ada");
  const Samples clubs = recordedSpeech("cards/001.wav");
  const Samples hearts = recordedSpeech("cards/003.wav");
  const auto part = [&](const Samples& samples, const FormField& place, const char* kind) {
    return service.transcribe(ada, wav(samples),
                              {{"sessionId", "S", ""}, place, {"segmentKind", kind, ""}});
  };
  EXPECT_EQ(part(clubs, {"segmentIndex", "0", ""}, "chunk").status, 200);
  EXPECT_EQ(part(hearts, {"segmentIndex", "1", ""}, "chunk").status, 200);
  const double minutes = service.usage(ada).body["dailyMinutes"];
  const Answer whole =
      part(joinedSamples({clubs, hearts}), {"previousText", "and then", ""}, "full");
  EXPECT_EQ(whole.at("text"), "ten of clubs seven of clubs");
  EXPECT_NEAR(service.usage(ada).body["dailyMinutes"].get<double>(), minutes, 1e-6);

  ServiceOptions options = testOptions();
  options.freeDailyMinutes = 0;
  RunningService broke(options);
  const Answer refused = broke.transcribe(ada, wav(clubs));
  EXPECT_EQ(refused.at("limitType"), "dailyMinutes");
  EXPECT_EQ(refused.at("limitScope"), "device");
}

TEST(Transcribe, SharesALongRecordingAmongFreeRecognisers) {
  ServiceOptions options = testOptions();
  options.recognisers = 2;
  RunningService service(options);
  const Samples clubs = recordedSpeech("cards/001.wav");
  const Samples hearts = recordedSpeech("cards/003.wav");
  const Samples pause = silence(16);
  const std::string file =
      wav(joinedSamples({clubs, pause, hearts, pause, clubs, pause, hearts, pause}));
  EXPECT_EQ(service.transcribe(guest("qd_ada"), file).at("text"),
            "ten of clubs seven of clubs ten of clubs seven of clubs");
}

TEST(Transcribe, RefusesIncompleteFormsAndWhatIsNotARecording) {
  RunningService service;
  const Identity ada = guest("qd_ada");
  const std::string file = wav(silence(0.1));
  const std::vector<std::pair<std::vector<FormField>, int>> cases{
      {{{"language", "de", ""}}, 422},
      {{{"segmentKind", "half", ""}, {"sessionId", "S", ""}}, 400},
      {{{"segmentKind", "chunk", ""}, {"sessionId", "S", ""}}, 400},
      {{{"segmentKind", "chunk", ""}, {"segmentIndex", "0", ""}}, 400},
      {{{"segmentKind", "chunk", ""}, {"sessionId", "S", ""}, {"segmentIndex", "1x", ""}}, 400},
  };
  for (const auto& [fields, status] : cases)
    EXPECT_EQ(service.transcribe(ada, file, fields).status, status) << fields.back().content;
  httplib::Client client = service.client();
  const auto headers = RunningService::key(RunningService::headersOf(ada));
  const httplib::MultipartFormDataItems endless{{"file", file, "a.wav", ""},
                                                {"durationMinutes", "nan", "", ""}};
  EXPECT_EQ(client.Post(path, headers, endless)->status, 400);
  EXPECT_EQ(client.Post(path, headers, "{}", "application/json")->status, 400);

  for (const std::string& junk :
       {std::string("hello"), std::string("#EXTM3U\nfile:///etc/hostname\n"), wav({})})
    EXPECT_EQ(service.transcribe(ada, junk).status, 422) << junk.substr(0, 20);
  EXPECT_EQ(service.transcribe(ada, wav(silence(606))).at("message"),
            "The recording is too large: the plan allows 600 seconds.");
  EXPECT_EQ(service.usage(ada).body["dailyMinutes"], 0.0);
}

TEST(AudioDecoder, BringsEveryRateToSixteenKilohertzWithoutLosingTheEnd) {
  for (const std::uint32_t rate : {8'000u, 44'100u, 48'000u}) {
    Samples stereo(rate * 2 * 2);  // two seconds
    // The left channel is loud in the last tenth of a second; the right is silent.
    for (std::size_t i = stereo.size() - rate / 5; i < stereo.size(); i += 2) stereo[i] = 20'000;
    const Audio audio = decodeAudio(wav(stereo, rate, 2), 600);
    EXPECT_NEAR(static_cast<double>(audio.samples.size()), 32'000, 1) << rate;
    EXPECT_EQ(audio.samples[1'000], 0);
    EXPECT_GT(audio.samples[31'500], 5'000);
  }
}

TEST(AudioDecoder, SurvivesDamageAndStopsAtTheLongestRecording) {
  const Samples speech = recordedSpeech("cards/005.wav");
  std::string file = m4a(speech);
  EXPECT_NEAR(decodeAudio(file, 600).seconds(), 3.5, 0.15);
  // What a crash leaves are whole fragments, of a second each.
  const std::string begun = file.substr(0, file.rfind("moof") - 4);
  EXPECT_NEAR(decodeAudio(begun, 600).seconds(), 3.0, 0.15);

  std::mt19937 random(7);
  for (int round = 0; round < 50; ++round) {
    std::string damaged = file;
    for (int i = 0; i < 20; ++i) damaged[random() % damaged.size()] = static_cast<char>(random());
    try {
      EXPECT_LT(decodeAudio(damaged, 600).seconds(), 601) << round;
    } catch (const UndecodableAudio&) {
      continue;  // the other right answer
    }
  }
  EXPECT_LT(decodeAudio(wav(silence(30)), 10).seconds(), 12);
}

TEST(RecogniserPool, BoundsTheQueueAndGivesEachItsTurn) {
  Pronunciation pronunciation;
  RecogniserPool none(1, 0, pronunciation);
  RecogniserPool pool(1, 1, pronunciation);
  const auto busy = none.acquire();
  EXPECT_THROW(none.acquire(), ServiceError);

  std::future<std::string> second;
  {
    const auto first = pool.acquire();
    second = std::async(std::launch::async, [&pool] {
      return pool.acquire()->transcribe(recordedSpeech("cards/001.wav"), {});
    });
  }
  EXPECT_EQ(second.get(), "ten of clubs");
}

TEST(Vocabulary, IsPartedByCommasAndSpokenByItsLetters) {
  EXPECT_EQ(vocabularyFrom(" Ada , ,New York,"), (std::vector<std::string>{"Ada", "New York"}));
  EXPECT_EQ(wordsOf({"New York", "new", "New Jersey's", "B2B"}),
            (std::vector<std::string>{"New", "York", "new", "Jersey's"}));
  Pronunciation pronunciation;
  EXPECT_EQ(pronunciation.phones("Debian"), "D IH B IY AH N");
  EXPECT_EQ(pronunciation.phones("USB"), "Y UW EH S B IY");
  for (const std::string& mute : {std::string("42"), std::string("ñandú"), std::string(1000, 'a')})
    EXPECT_EQ(pronunciation.phones(mute), "");
}

}  // namespace
}  // namespace quillo::service
