#include <gtest/gtest.h>

#include <future>
#include <random>

#include "service/audio_decoder.h"
#include "service/recogniser_pool.h"
#include "service/running_service.h"
#include "service/service_error.h"
#include "service/speech.h"
#include "service/utterances.h"
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

  // No request leaves a trace in the one after it.
  EXPECT_EQ(service.transcribe(ada, wav(clubs)).at("text"), "ten of clubs");
  const double heard = (2 * 1.0954 + 2.999) / 60;
  EXPECT_NEAR(service.usage(ada).body["dailyMinutes"].get<double>(), heard, 0.005);
}

TEST(Transcribe, GivesNoTextForSilenceAndNoise) {
  RunningService service;
  for (const Samples& samples : {silence(2), noise(2), silence(0.02)}) {
    const Answer answer = service.transcribe(guest("qd_ada"), wav(samples));
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.at("text"), "");
  }
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

TEST(Transcribe, CountsASessionOnceAndRefusesItWhenTheMinutesAreUsedUp) {
  ServiceOptions options = testOptions();
  options.freeDailyMinutes = 0;
  RunningService broke(options);
  const Answer refused = broke.transcribe(guest("qd_ada"), wav(recordedSpeech("cards/001.wav")));
  EXPECT_EQ(refused.status, 429);
  EXPECT_EQ(refused.at("limitType"), "dailyMinutes");
  EXPECT_EQ(refused.at("limitScope"), "device");

  RunningService service;
  const Identity ada = guest("qd_ada");
  const Samples clubs = recordedSpeech("cards/001.wav");
  const Samples hearts = recordedSpeech("cards/003.wav");
  const auto chunk = [&](const Samples& samples, const char* index) {
    return service
        .transcribe(ada, wav(samples),
                    {{"sessionId", "S", ""},
                     {"segmentIndex", index, ""},
                     {"segmentKind", "chunk", ""},
                     {"previousText", "and then", ""}})
        .status;
  };
  EXPECT_EQ(chunk(clubs, "0"), 200);
  EXPECT_EQ(chunk(hearts, "1"), 200);
  const double minutes = service.usage(ada).body["dailyMinutes"];
  const Answer whole = service.transcribe(ada, wav(joinedSamples({clubs, hearts})),
                                          {{"sessionId", "S", ""}, {"segmentKind", "full", ""}});
  EXPECT_EQ(whole.at("text"), "ten of clubs seven of clubs");
  EXPECT_NEAR(service.usage(ada).body["dailyMinutes"].get<double>(), minutes, 1e-6);
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

TEST(Transcribe, RefusesFormsThatAreNotComplete) {
  RunningService service;
  const Identity ada = guest("qd_ada");
  const std::string file = wav(silence(0.1));
  const std::vector<std::pair<std::vector<FormField>, int>> cases{
      {{{"language", "de", ""}}, 422},
      {{{"language", "Klingonese", ""}}, 400},
      {{{"segmentKind", "half", ""}, {"sessionId", "S", ""}}, 400},
      {{{"segmentKind", "chunk", ""}, {"sessionId", "S", ""}}, 400},
      {{{"segmentKind", "chunk", ""}, {"segmentIndex", "0", ""}}, 400},
      {{{"segmentKind", "chunk", ""}, {"sessionId", "S", ""}, {"segmentIndex", "-1", ""}}, 400},
      {{{"segmentKind", "chunk", ""}, {"sessionId", "S", ""}, {"segmentIndex", "1x", ""}}, 400},
      {{{"segmentKind", "full", ""}, {"sessionId", std::string(201, 'S'), ""}}, 400},
  };
  for (const auto& [fields, status] : cases)
    EXPECT_EQ(service.transcribe(ada, file, fields).status, status) << fields.front().content;

  httplib::Client client = service.client();
  const auto headers = RunningService::key(RunningService::headersOf(ada));
  const auto post = [&](const httplib::MultipartFormDataItems& items) {
    return client.Post(path, headers, items)->status;
  };
  EXPECT_EQ(post({{"file", file, "a.wav", ""}}), 400);
  EXPECT_EQ(post({{"durationMinutes", "1.0", "", ""}}), 400);
  EXPECT_EQ(post({{"file", file, "a.wav", ""}, {"durationMinutes", "nan", "", ""}}), 400);
  EXPECT_EQ(post({{"file", file, "a.wav", ""}, {"durationMinutes", "-1", "", ""}}), 400);
  EXPECT_EQ(client.Post(path, headers, "{}", "application/json")->status, 400);
}

TEST(Transcribe, RefusesWhatIsNotARecording) {
  RunningService service;
  std::string playlist = "#EXTM3U\n#EXTINF:1,\nfile:///etc/hostname\n";
  for (const std::string& junk :
       {std::string("hello"), std::string(5000, '\0'), playlist, wav({})}) {
    const Answer answer = service.transcribe(guest("qd_ada"), junk);
    EXPECT_EQ(answer.status, 422) << junk.substr(0, 20);
    EXPECT_FALSE(answer.at("message").empty());
  }
  const Answer tooLong = service.transcribe(guest("qd_ada"), wav(silence(606)));
  EXPECT_EQ(tooLong.status, 413);
  EXPECT_EQ(tooLong.at("message"), "The recording is too large: the plan allows 600 seconds.");
  EXPECT_EQ(service.usage(guest("qd_ada")).body["dailyMinutes"], 0.0);
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

TEST(Utterances, AreCutAtTheQuietestMoment) {
  EXPECT_TRUE(utterances({}).empty());
  const Samples brief = noise(30);
  EXPECT_EQ(utterances(brief).size(), 1u);

  const Samples pause = joinedSamples({noise(20), silence(0.5), noise(25)});
  const auto pieces = utterances(pause);
  ASSERT_EQ(pieces.size(), 2u);
  const double cut = static_cast<double>(pieces[0].size()) / Audio::sampleRate;
  EXPECT_GT(cut, 20.0);
  EXPECT_LT(cut, 20.5);
  EXPECT_EQ(pieces[0].size() + pieces[1].size(), pause.size());
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
  EXPECT_EQ(vocabularyFrom(std::string(500, ',') + "a").size(), 1u);
  EXPECT_EQ(wordsOf({"New York", "new", "New Jersey's", "B2B"}),
            (std::vector<std::string>{"New", "York", "new", "Jersey's"}));

  Pronunciation pronunciation;
  EXPECT_EQ(pronunciation.phones("Debian"), "D IH B IY AH N");
  EXPECT_EQ(pronunciation.phones("USB"), "Y UW EH S B IY");
  EXPECT_EQ(pronunciation.phones("AA"), "EY EY");
  for (const char* mute : {"", "42", "ñandú", "a b", "'"})
    EXPECT_EQ(pronunciation.phones(mute), "");
  EXPECT_EQ(pronunciation.phones(std::string(1000, 'a')), "");
}

}  // namespace
}  // namespace quillo::service
