// What follows from the description of a form.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/forms/bindings.h"
#include "shell/forms/form.h"

namespace quillo::forms {
namespace {

using testing::ElementsAre;

// "toggle sounds: Play sounds = on [help]", in brackets when it is disabled.
std::string told(const Control& control) {
  static constexpr const char* roles[] = {"button", "toggle", "choice", "field"};
  std::string text = std::string(roles[static_cast<int>(control.role)]) + " " + control.id + ": " +
                     control.name.english();
  if (const bool* const isOn = std::get_if<bool>(&control.value))
    text += *isOn ? " = on" : " = off";
  if (const auto* const value = std::get_if<std::string>(&control.value)) text += " = " + *value;
  if (!control.help.empty()) text += " [" + control.help.english() + "]";
  return control.isEnabled ? text : "(" + text + ")";
}

class FormTest : public testing::Test {
 protected:
  std::vector<std::string> controls() const {
    std::vector<std::string> texts;
    for (const Control& control : form_.controls()) texts.push_back(told(control));
    return texts;
  }
  void change(const char* id, const ControlValue& value) {
    controlWithId(form_, id).value().change(value);
  }
  void press(const char* id) { controlWithId(form_, id).value().press(); }

  Published<bool> sounds_{true};
  Published<std::string> mode_{"toggle"};
  Published<std::string> email_;
  Published<std::vector<std::vector<std::string>>> rules_;
  Published<bool> isGranted_;
  int pressed_ = 0;

  List rules() {
    return {.columns = {{"from", words("Heard")}, {"to", words("Written")}},
            .elements = [this] { return rules_.get(); },
            .add =
                [this](const auto& rule) {
                  auto all = rules_.get();
                  all.push_back(rule);
                  rules_ = all;
                },
            .remove =
                [this](std::size_t index) {
                  auto all = rules_.get();
                  all.erase(all.begin() + static_cast<std::ptrdiff_t>(index));
                  rules_ = all;
                },
            .watch = watch(rules_),
            .emptyText = words("No rules yet")};
  }
  Form form_{{
      .title = words("General"),
      .sections =
          {{.title = words("Dictation"),
            .rows = {{.id = "sounds",
                      .label = words("Play sounds"),
                      .help = words("At the start and the end."),
                      .kind = Toggle{bind(sounds_)}},
                     {.id = "mode",
                      .label = words("Mode"),
                      .kind = Choice{bind(mode_),
                                     [] {
                                       return std::vector<ControlOption>{
                                           {"toggle", words("Toggle")},
                                           {"hold", words("Hold to talk")}};
                                     }},
                      .isEnabled = [this] { return sounds_.get(); }},
                     {.id = "access",
                      .kind = Note{words("Access is granted.")},
                      .isVisible = [this] { return isGranted_.get(); }}}},
           {.title = words("You"),
            .rows = {{.id = "email",
                      .label = words("E-mail"),
                      .kind = Field{bind(email_)},
                      .error = Text([this] { return email_->empty() ? Words() : words("No @."); })},
                     {.id = "rules", .label = words("Rules"), .kind = rules()},
                     {.id = "done",
                      .kind = Button{words("Done"), [this] { ++pressed_; }, ButtonStyle::prominent,
                                     KeyEquivalent::defaultAction}}}}},
      .watches = {watch(isGranted_)},
  }};
};

TEST_F(FormTest, WhatCanBeReadAndWorkedFollowsTheValues) {
  EXPECT_THAT(english(form_.texts()),
              ElementsAre("General", "Dictation", "Play sounds", "At the start and the end.",
                          "Mode", "Toggle", "You", "E-mail", "Rules", "No rules yet"));
  EXPECT_THAT(controls(), ElementsAre("toggle sounds: Play sounds = on [At the start and the end.]",
                                      "choice mode: Mode = toggle",
                                      "field email: E-mail = ", "field rules.new.from: Heard = ",
                                      "field rules.new.to: Written = ", "(button rules.add: Add)",
                                      "button done: Done"));
  int changes = 0;
  const Subscription watching = form_.observe([&] { ++changes; });
  change("mode", "hold");
  press("sounds");
  change("email", "ada");
  change("rules.new.from", "cheque");
  change("rules.new.to", "check");
  isGranted_ = true;
  EXPECT_EQ(changes, 6);
  EXPECT_THAT(
      controls(),
      ElementsAre("toggle sounds: Play sounds = off [At the start and the end.]",
                  "(choice mode: Mode = hold)", "field email: E-mail = ada [No @.]",
                  "field rules.new.from: Heard = cheque", "field rules.new.to: Written = check",
                  "button rules.add: Add", "button done: Done"));
  press("rules.add");
  EXPECT_THAT(english(form_.texts()),
              ElementsAre("General", "Dictation", "Play sounds", "At the start and the end.",
                          "Mode", "Hold to talk", "Access is granted.", "You", "E-mail", "ada",
                          "No @.", "Rules", "cheque → check"));
  EXPECT_EQ(told(*controlWithId(form_, "rules.0.remove")),
            "button rules.0.remove: Remove cheque → check");
  EXPECT_EQ(told(*controlWithId(form_, "rules.add")), "(button rules.add: Add)");
  press("rules.0.remove");
  EXPECT_THAT(rules_.get(), testing::IsEmpty());
  controlOfKey(form_, KeyEquivalent::defaultAction)->press();
  EXPECT_EQ(pressed_, 1);
}

}  // namespace
}  // namespace quillo::forms
