// What every desktop's accessibility keeps.
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "contracts/support/contract_host.h"
#include "platform/accessibility.h"

namespace quillo::contracts {

class AccessibilityHost : public ContractHost {
 public:
  virtual Accessibility& accessibility() = 0;

  // Starts a program with a window "letter" in which a text of several lines has the focus, and a
  // password field below it; it comes to the front. Its process identifier.
  virtual std::int32_t launchEditor(std::string_view text) = 0;
  // The user moves the focus to the password field and types into it.
  virtual void typePassword(std::string_view password) = 0;
  // The program stops answering, and goes on.
  virtual void hang() = 0;
  virtual void goOn() = 0;
  virtual void quit() = 0;
  // Whether the program knows where on the screen a part of its text is.
  virtual bool tellsBounds() const { return true; }
};

class AccessibilityContract : public PortContract<AccessibilityHost> {
 protected:
  Accessibility& accessibility() { return host().accessibility(); }
  AccessibilityAnswer read(const AccessibilityElement& element, std::string_view name) {
    return accessibility().attribute(element, name);
  }
  template <class T>
  std::optional<T> value(const AccessibilityElement& element, std::string_view name) {
    const AccessibilityAnswer answer = read(element, name);
    const T* found = answer.as<T>();
    return found ? std::optional(*found) : std::nullopt;
  }
  std::optional<AccessibilityElement> focused() {
    return value<AccessibilityElement>(accessibility().systemWideElement(), ax::focusedUIElement);
  }
  // The field that has the focus, once the program shows it.
  AccessibilityElement editor(std::string_view text) {
    process_ = host().launchEditor(text);
    EXPECT_TRUE(host().runUntil([&] {
      const auto element = focused();
      return element && value<std::string>(*element, ax::value) == text;
    }));
    return focused().value();
  }
  AccessibilityElement application() { return accessibility().applicationElement(process_); }
  bool select(const AccessibilityElement& element, TextRange range) {
    return accessibility().setAttribute(element, ax::selectedTextRange, range) &&
           host().runUntil(
               [&] { return value<TextRange>(element, ax::selectedTextRange) == range; });
  }

  std::int32_t process_ = 0;
};

TEST_P(AccessibilityContract, TheFocusedTextTellsWhatItIsAndWhereItIs) {
  const std::string text = "Grüße 🎙 an\nalle";
  const AccessibilityElement field = editor(text);
  EXPECT_EQ(focused(), field) << "the same thing is equal, whichever handle it has";
  EXPECT_EQ(value<std::string>(field, ax::role), "AXTextArea");
  EXPECT_EQ(value<double>(field, ax::numberOfCharacters), 16) << "in UTF-16 units";
  EXPECT_EQ(accessibility().isSettable(field, ax::value), true);
  EXPECT_EQ(accessibility().processIdentifier(field), process_);

  const auto window = value<AccessibilityElement>(application(), ax::focusedWindow);
  ASSERT_TRUE(window);
  EXPECT_EQ(value<std::string>(*window, ax::title), "letter");
  std::optional<AccessibilityElement> above = field;
  for (int level = 0; level < 30 && above && above != window; ++level)
    above = value<AccessibilityElement>(*above, ax::parent);
  EXPECT_EQ(above, window);

  const auto position = value<AccessibilityPoint>(field, ax::position);
  const auto size = value<Size>(field, ax::size);
  ASSERT_TRUE(position && size);
  EXPECT_GT(size->height, 20);
  const auto hit = accessibility().elementAtPosition(
      {position->x + size->width / 2, position->y + size->height / 2});
  EXPECT_EQ(hit, field);
}

TEST_P(AccessibilityContract, ASelectionIsARangeInUtf16Units) {
  const AccessibilityElement field = editor("one 🎙 two\nthree");
  ASSERT_TRUE(select(field, {7, 3}));
  EXPECT_EQ(value<std::string>(field, ax::selectedText), "two") << "behind a surrogate pair";
  const AccessibilityAnswer bounds =
      accessibility().parameterizedAttribute(field, ax::boundsForRange, TextRange{7, 3});
  const auto* rect = bounds.as<AccessibilityRect>();
  ASSERT_EQ(rect != nullptr, host().tellsBounds());
  if (rect) {
    EXPECT_GT(rect->size.width, 0);
    EXPECT_GE(rect->origin.y, value<AccessibilityPoint>(field, ax::position)->y);
  }

  ASSERT_TRUE(select(field, {4, 2}));
  EXPECT_EQ(value<std::string>(field, ax::selectedText), "🎙");
  ASSERT_TRUE(select(field, {0, 16}));
  EXPECT_EQ(value<std::string>(field, ax::selectedText), "one 🎙 two\nthree");
  ASSERT_TRUE(select(field, {3, 0})) << "a caret is an empty range";
  EXPECT_EQ(value<std::string>(field, ax::selectedText).value_or(""), "");
}

TEST_P(AccessibilityContract, APasswordIsNeverRead) {
  const AccessibilityElement text = editor("words");
  host().typePassword("tr0ub4dor");
  std::optional<AccessibilityElement> found;
  ASSERT_TRUE(host().runUntil([&] {
    found = focused();
    return found && found != text;
  }));
  const AccessibilityElement& field = *found;
  EXPECT_EQ(value<std::string>(field, ax::role), "AXTextField");
  EXPECT_EQ(value<std::string>(field, ax::subrole), "AXSecureTextField");
  for (const std::string_view name :
       {ax::value, ax::selectedText, ax::selectedTextRange, ax::numberOfCharacters})
    EXPECT_FALSE(read(field, name)) << name;
}

TEST_P(AccessibilityContract, WhatIsNotThereIsToldFromWhatDoesNotAnswer) {
  const AccessibilityElement field = editor("words");
  const auto failureOf = [&](const AccessibilityElement& element, std::string_view name) {
    const AccessibilityAnswer answer = read(element, name);
    return answer ? std::nullopt : std::optional(answer.error());
  };
  EXPECT_EQ(failureOf(field, "AXNoSuchThing"), AccessibilityFailure::absent);
  EXPECT_EQ(accessibility().setAttribute(field, "AXNoSuchThing", true),
            AccessibilityFailure::absent);
  EXPECT_EQ(accessibility().isSettable(field, "AXNoSuchThing"), AccessibilityFailure::absent);
  EXPECT_TRUE(failureOf(accessibility().applicationElement(999'999), ax::focusedWindow));

  host().hang();
  const Duration timeout = std::chrono::milliseconds(350);
  accessibility().setMessagingTimeout(application(), timeout);
  const MonotonicTime begun = host().mainThread().now();
  EXPECT_EQ(failureOf(field, ax::value), AccessibilityFailure::cannotComplete);
  for (int call = 0; call < 100; ++call) read(field, ax::role);
  EXPECT_LT(host().mainThread().now() - begun, timeout + std::chrono::milliseconds(50))
      << "one call ran out, and the others did not wait";
  host().goOn();
  EXPECT_TRUE(host().runUntil([&] { return value<std::string>(field, ax::value) == "words"; }));

  host().quit();
  EXPECT_TRUE(host().runUntil([&] { return !read(field, ax::role); }));
  EXPECT_FALSE(focused() == field);
}

}  // namespace quillo::contracts
