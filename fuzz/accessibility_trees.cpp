// Shows arbitrary trees to every predicate and to the capture: elements of odd roles that refer to
// one another in circles or to nothing, values of every type under every name, texts, ranges and
// frames that make no sense. All must come to an end after a bounded number of calls, and nothing
// that is protected may be captured.
//
// The bytes are instructions for building one program's tree.
#include <array>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "bubble/selection_reader.h"
#include "bubble/selection_rules.h"
#include "hosts/simulated/simulated_desktop.h"

namespace {

using namespace quillo;
using simulated::SimulatedDesktop;
using simulated::TreeElement;

constexpr std::int64_t mostCalls = 600;  // of one predicate or one capture, on whatever tree

constexpr auto names = std::to_array<std::string_view>({
    ax::role,
    ax::subrole,
    ax::roleDescription,
    ax::title,
    ax::description,
    ax::help,
    ax::placeholderValue,
    ax::identifier,
    ax::domIdentifier,
    ax::domClassList,
    ax::valueDescription,
    ax::url,
    ax::hasPopup,
    ax::valueProtected,
    ax::protectedContent,
    ax::position,
    ax::size,
    ax::parent,
    ax::editableAncestor,
    ax::labeledBy,
    ax::titleUIElement,
    ax::children,
    ax::value,
    ax::numberOfCharacters,
    ax::selectedText,
    ax::selectedTextRange,
    ax::focusedWindow,
    ax::textInputElementRange,
});

constexpr auto texts = std::to_array<std::string_view>({
    "",
    "AXTextField",
    "AXTextArea",
    "AXSearchField",
    "AXComboBox",
    "AXContentEditable",
    "iOSContentGroup",
    "XLIncellEditor",
    "AXSheet",
    "AXDialog",
    "AXWebArea",
    "AXList",
    "AXGroup",
    "search",
    "Message",
    "e-mail",
    "É-MAIL",
    "ir a",
    "straße",
    "google docs",
    "none",
    "\xF0\x9F\x8E",
    "\xFF",
    "\n",
    "a\u2028b",
    "\r\n",
    "  ",
    "name-",
    "🎙",
    "open",
});

class Instructions {
 public:
  Instructions(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
  bool isEmpty() const { return size_ == 0; }
  std::uint8_t next() {
    if (size_ == 0) return 0;
    --size_;
    return *data_++;
  }
  std::size_t below(std::size_t count) { return next() % count; }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
};

double number(Instructions& bytes) {
  constexpr double odd[] = {0,
                            -1,
                            1,
                            90,
                            2000,
                            2001,
                            200'000,
                            200'001,
                            0.5,
                            1e300,
                            -1e300,
                            std::numeric_limits<double>::quiet_NaN(),
                            std::numeric_limits<double>::infinity()};
  return odd[bytes.below(std::size(odd))];
}

std::int64_t whole(Instructions& bytes) {
  constexpr std::int64_t odd[] = {0,
                                  1,
                                  2,
                                  3,
                                  -1,
                                  2000,
                                  std::numeric_limits<std::int64_t>::max(),
                                  std::numeric_limits<std::int64_t>::min()};
  return odd[bytes.below(std::size(odd))];
}

std::string text(Instructions& bytes) {
  std::string made;
  for (std::size_t parts = bytes.below(4); parts > 0; --parts)
    made += texts[bytes.below(texts.size())];
  const std::size_t repeated = bytes.below(8) == 0 ? 5000 : 1;
  std::string all;
  for (std::size_t i = 0; i < repeated && all.size() < 250'000; ++i) all += made;
  return all;
}

// A program whose tree grows by what the bytes say.
class Forest {
 public:
  Forest(SimulatedDesktop& desktop, Instructions& bytes)
      : bytes_(bytes), program_(desktop.workspace().launch({application(), "Program"})) {
    all_ = {&program_.tree().application(), program_.tree().mainWindow(),
            program_.tree().focusedElement()};
    if (bytes_.below(4) == 0)
      program_.tree().callsUntilRebuilt = 1 + static_cast<int>(bytes_.below(40));
    const bool isMortal = bytes_.below(2) == 0;
    const std::size_t calls = 1 + bytes_.below(40);
    while (!bytes_.isEmpty() && all_.size() < 60) grow();
    program_.tree().focus(any());
    if (isMortal) die(desktop, calls);
  }

  simulated::SimulatedApplication& program() { return program_; }
  TreeElement* any() { return all_[bytes_.below(all_.size())]; }

 private:
  std::string application() {
    constexpr const char* all[] = {"ru.keepcoder.Telegram", "com.google.Chrome",
                                   "com.microsoft.vscode", "com.microsoft.Excel", "?"};
    return all[bytes_.below(std::size(all))];
  }

  // Something goes before the call of this number is answered.
  void die(SimulatedDesktop& desktop, std::size_t calls) {
    TreeElement* mortal = all_[1 + bytes_.below(all_.size() - 1)];
    desktop.accessibility().atEachCall([this, mortal, calls]() mutable {
      if (--calls == 0) program_.tree().remove(*mortal);
    });
  }

  void grow() {
    switch (bytes_.below(4)) {
      case 0:
        return add();
      case 1:
        return any()->set(names[bytes_.below(names.size())], std::nullopt);
      case 2:
        if (TreeElement* element = any(); element->editor())
          element->editor()->select(TextRange{whole(bytes_), whole(bytes_)});
        return;
      default:
        any()->set(names[bytes_.below(names.size())], value(2));
    }
  }

  void add() {
    TreeElement::Description made{.role = std::string(texts[bytes_.below(texts.size())]),
                                  .subrole = std::string(texts[bytes_.below(texts.size())])};
    if (bytes_.below(2) == 0) {
      made.editor = std::make_shared<simulated::Editor>();
      made.editor->setText(text(bytes_));
    }
    if (bytes_.below(4) == 0) made.exposure = simulated::TextExposure::secret;
    made.isEditable = bytes_.below(4) != 0;
    // Deep rather than broad.
    all_.push_back(&all_.back()->add(std::move(made)));
  }

  AccessibilityValue value(int depth) {
    switch (bytes_.below(depth > 0 ? 10 : 9)) {
      case 0:
        return bytes_.below(2) == 0;
      case 1:
        return number(bytes_);
      case 2:
        return TextRange{whole(bytes_), whole(bytes_)};
      case 3:
        return AccessibilityPoint{number(bytes_), number(bytes_)};
      case 4:
        return Size{number(bytes_), number(bytes_)};
      case 5:
        return AccessibilityURL{text(bytes_)};
      case 6:
        return any()->handle();
      case 7:
      case 8:
        return text(bytes_);
      default:
        return AccessibilityList{value(depth - 1), value(depth - 1)};
    }
  }

  Instructions& bytes_;
  simulated::SimulatedApplication& program_;
  std::vector<TreeElement*> all_;
};

class Visitor {
 public:
  explicit Visitor(SimulatedDesktop& desktop) : desktop_(desktop) { reader_.limitCalls(); }

  void visit(TreeElement& seen, std::string_view application) {
    const AccessibilityElement element = seen.handle();
    const auto ignore = [](std::string_view) {};
    bounded([&] { fields_.isSensitiveContext(element); });
    bounded([&] { fields_.isWritableTextElement(element); });
    bounded([&] { fields_.isWritingContext(element); });
    bounded([&] { fields_.isNonProseField(element); });
    bounded([&] { fields_.isBadgeEligibleField(element, application, ignore); });
    bounded([&] { windows_.isNonWritingDialog(); });
    bounded([&] { windows_.shouldSkipClipboardFallback(application, SelectionTrigger::mouse); });
    bounded([&] { reader_.selectionBounds(element); });
    bounded([&] { reader_.readSelectedText(element); });
    if (const auto text = bounded([&] { return reader_.captureParagraph(element, application); }))
      judge(element, *text);
  }

 private:
  template <class Look>
  std::invoke_result_t<Look> bounded(Look look) {
    struct Count {
      SimulatedDesktop& desktop;
      std::int64_t before;
      ~Count() {
        if (desktop.accessibility().calls() - before <= mostCalls) return;
        std::cerr << desktop.accessibility().calls() - before << " calls\n";
        std::abort();
      }
    };
    const Count count{desktop_, desktop_.accessibility().calls()};
    return look();
  }

  void judge(const AccessibilityElement& element, const std::string& captured) {
    if (fields_.isSensitiveContext(element) || !isAcceptedSelection(captured)) std::abort();
  }

  SimulatedDesktop& desktop_;
  FieldClassification fields_{desktop_.accessibility(), desktop_.screens()};
  WindowClassification windows_{desktop_.accessibility(), desktop_.workspace(),
                                desktop_.application(), desktop_.log()};
  SelectionReader reader_{desktop_.accessibility(), desktop_.screens(), fields_, windows_,
                          desktop_.log()};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Instructions bytes(data, size);
  SimulatedDesktop desktop;
  Forest forest(desktop, bytes);
  Visitor visitor(desktop);
  visitor.visit(*forest.any(), forest.program().identity().bundleIdentifier.value_or("?"));
  desktop.abandonTasks();
  return 0;
}
