// Limits of what is captured; tests/scenarios/capture tells the routes.
#include <gtest/gtest.h>

#include "base/text.h"
#include "bubble/selection_reader.h"
#include "bubble/selection_rules.h"
#include "hosts/simulated/simulated_desktop.h"
#include "insertion/classification/accessibility_reading.h"

namespace quillo {
namespace {

using simulated::TreeElement;

std::string letters(std::size_t count) {
  return std::string(count, 'a');
}

TEST(SelectionRules, EdgesCountForTheLengthAndNotForTheContent) {
  EXPECT_TRUE(isAcceptedSelection(letters(3999) + " "));
  EXPECT_FALSE(isAcceptedSelection(letters(4000) + " "));
  EXPECT_TRUE(isAcceptedSelection(letters(3999) + "👨‍👩‍👧")) << "characters, not bytes";
  EXPECT_FALSE(isAcceptedSelection(" \t\r\n\u2028\u00A0"));
  EXPECT_TRUE(isLongEnough(" ab cd ", SelectionTrigger::mouse));
  EXPECT_FALSE(isLongEnough("  comprehensible ", SelectionTrigger::keyboard)) << "14 without edges";
  EXPECT_TRUE(isLongEnough("incomprehensible", SelectionTrigger::keyboard));
}

TEST(SelectionRules, AParagraphLiesBetweenNewlinesOfAnyKind) {
  const std::u16string text = u"one\r\ntwo 🎙\u2029three\u0085\n";
  const auto expect = [&](std::int64_t caret, std::optional<TextRange> paragraph) {
    EXPECT_EQ(paragraphAt(text, caret), paragraph) << caret;
  };
  expect(0, TextRange{0, 3});
  expect(3, TextRange{0, 3});
  expect(4, std::nullopt);  // between CR and LF
  expect(5, TextRange{5, 6});
  expect(10, TextRange{5, 6});  // within the surrogate pair
  expect(11, TextRange{5, 6});
  expect(12, TextRange{12, 5});
  expect(19, std::nullopt);  // behind the final newline
  expect(-5, TextRange{0, 3});
  expect(std::numeric_limits<std::int64_t>::max(), std::nullopt);
  EXPECT_TRUE(paragraphAt(std::u16string(2000, u'a'), 7));
  EXPECT_FALSE(paragraphAt(std::u16string(2001, u'a'), 7));
}

class SelectionReaderTest : public testing::Test {
 protected:
  // How much of it is taken, in bytes.
  std::optional<std::size_t> takenOf(const std::string& text) {
    program_.editor().setText(text);
    const auto taken = reader_.captureParagraph(reader_.focusedElement(), "ru.keepcoder.Telegram");
    return taken ? std::optional(taken->size()) : std::nullopt;
  }

  simulated::SimulatedDesktop desktop_;
  simulated::SimulatedApplication& program_ =
      desktop_.workspace().launch({"ru.keepcoder.Telegram", "Chat"});
  FieldClassification fields_{desktop_.accessibility(), desktop_.screens()};
  WindowClassification windows_{desktop_.accessibility(), desktop_.workspace(),
                                desktop_.application(), desktop_.log()};
  SelectionReader reader_{desktop_.accessibility(), desktop_.screens(), fields_, windows_,
                          desktop_.log()};
};

TEST_F(SelectionReaderTest, AShortDraftIsTakenWholeAndALongOneByItsParagraph) {
  EXPECT_EQ(takenOf(letters(1000) + "\n" + letters(999)), 2000u);
  EXPECT_EQ(takenOf(letters(1000) + "\n" + letters(1000)), 1000u);
  EXPECT_FALSE(takenOf(std::string(10, ' ')));
  EXPECT_TRUE(takenOf(letters(199'998) + "\na"));
  EXPECT_FALSE(takenOf(letters(199'999) + "\na")) << "a field of 200,001";
}

TEST_F(SelectionReaderTest, BoundsLieOnTheScreenOrAreUnknown) {
  const AccessibilityElement element = reader_.focusedElement().value();
  program_.editor().setText("one two");
  program_.editor().select("two");
  // 8 a unit and 16 a line in a field whose top is 110 below that of a screen 900 high.
  EXPECT_EQ(reader_.selectionBounds(element), (Rect{{132, 774}, {24, 16}}));
  desktop_.screens().arrange({});
  EXPECT_FALSE(reader_.selectionBounds(element));
  desktop_.screens().arrange({{{{-800, 0}, {800, 600}}, {}}, {{{0, 0}, {1440, 900}}, {}}});
  EXPECT_EQ(reader_.selectionBounds(element)->minY(), 774) << "of the screen at the origin";
  for (const auto manner : {simulated::ApplicationTree::FrameManner::negative,
                            simulated::ApplicationTree::FrameManner::notANumber}) {
    program_.tree().frames = manner;
    EXPECT_FALSE(reader_.selectionBounds(element));
    EXPECT_FALSE(elementFrame(desktop_.accessibility(), desktop_.screens(), element));
  }
}

TEST_F(SelectionReaderTest, ATreeWithoutEndIsLeftAfterAFewLevels) {
  TreeElement* element = program_.tree().mainWindow();
  for (int level = 0; level < 10'000; ++level) element = &element->add({.role = "AXGroup"});
  const std::int64_t before = desktop_.accessibility().calls();
  EXPECT_FALSE(fields_.isSensitiveContext(element->handle()));
  EXPECT_FALSE(fields_.isWritingContext(element->handle()));
  EXPECT_LE(desktop_.accessibility().calls() - before, 2 * 8 * 6);
}

}  // namespace
}  // namespace quillo
