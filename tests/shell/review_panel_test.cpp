// The review of a translation: the verdict, and how the user decides.
#include "shell/review/review_panel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "state/state_fixture.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

TEST(ReviewVerdictTest, CountsCommonWordsAgainstTheLongerText) {
  struct Case {
    const char* youSaid;
    const char* means;
    ReviewVerdict verdict;
  };
  const Case cases[] = {
      {"anything at all", "", ReviewVerdict::matches},
      {"a b c", "something else", ReviewVerdict::matches},  // no word to compare
      {"hello there friend", "hello there my dear friend", ReviewVerdict::matches},  // 3 of 5
      {"hello world", "goodbye world", ReviewVerdict::matches},                      // 1 of 2
      {"hello big world", "goodbye world", ReviewVerdict::mayDiffer},                // 1 of 3
      {"HELLO, World!", "hello—world", ReviewVerdict::matches},
      {"no no no no yes", "no yes", ReviewVerdict::mayDiffer},  // 2 of 5: repeated words count
      {"hello world", "a b", ReviewVerdict::mayDiffer},
      {"cafe\xCC\x81 noir", "caf\xC3\xA9 noir", ReviewVerdict::matches},  // composed or not
      {"हिन्दी में", "हिन्दी में", ReviewVerdict::matches},                     // marks are part of words
      {"42 apples", "42 pears", ReviewVerdict::matches},
  };
  for (const auto& [youSaid, means, verdict] : cases)
    EXPECT_EQ(reviewVerdict(youSaid, means), verdict) << youSaid << " / " << means;
}

class ReviewPanelTest : public StateTest {
 protected:
  ReviewPanelTest() {
    launch();
    review_.emplace(desktop_.mainThread(), desktop_.panels(), desktop_.screens(),
                    desktop_.application(), *state_);
  }
  // Opens a review, and lets the keys in flight pass.
  TaskHandle<ReviewDecision> open(std::string means = "See you tomorrow at nine") {
    const auto reviewing =
        start(desktop_.mainThread(),
              review_->present({"See you tomorrow at nine", words("English"), std::move(means),
                                "Bis morgen um neun", words("German")}));
    desktop_.runFor(249ms);
    EXPECT_FALSE(panels().press(KeyEquivalent::defaultAction));
    desktop_.runFor(1ms);
    return reviewing;
  }
  ReviewDecision decision(const TaskHandle<ReviewDecision>& reviewing) {
    return desktop_.await(reviewing.value());
  }
  simulated::VirtualPanels& panels() { return desktop_.panels(); }

  std::optional<MacReviewPanel> review_;
};

TEST_F(ReviewPanelTest, KeysDecideByTheSetting) {
  const auto decides = [this](KeyEquivalent key) {
    const auto reviewing = open();
    EXPECT_TRUE(panels().press(key));
    return decision(reviewing);
  };
  EXPECT_EQ(decides(KeyEquivalent::cancelAction), ReviewDecision::discard);
  EXPECT_EQ(decides(KeyEquivalent::defaultAction), ReviewDecision::insert);
  state_->escInserts = true;
  EXPECT_EQ(decides(KeyEquivalent::cancelAction), ReviewDecision::insert);
  const auto reviewing = open();
  EXPECT_TRUE(panels().click("Insert · ⏎ Esc"));
  EXPECT_EQ(decision(reviewing), ReviewDecision::insert);
}

TEST_F(ReviewPanelTest, OnlyTheUserDecidesAndOnlyByTheFirstClick) {
  const auto reviewing = open("");
  EXPECT_EQ(panels().visible().front()->frame().midY(), 875 / 2.0);
  EXPECT_EQ(panels().showing("Means"), nullptr);
  reviewing.cancel();
  desktop_.runFor(1h);
  EXPECT_FALSE(reviewing.isFinished());
  // Taken before the panel went, as a double click is.
  const auto controls = panels().visible().front()->content().controls();
  controls[1].press();
  controls[1].press();
  controls[2].press();
  EXPECT_EQ(decision(reviewing), ReviewDecision::discard);
  const auto next = open("Something else entirely");
  EXPECT_NE(panels().showing("may differ"), nullptr);
  controls[0].press();
  EXPECT_EQ(decision(next), ReviewDecision::reRecord);
}

}  // namespace
}  // namespace quillo
