#include "simulation/world/sample_form.h"

#include <algorithm>
#include <iterator>

#include "shell/forms/bindings.h"
#include "state/cycle_hot_key_preset.h"

namespace quillo::sim {
namespace {

using namespace forms;

Options fixed(std::vector<ControlOption> options) {
  return [options = std::move(options)] { return options; };
}

// The chord is one of the presets; its key tells which.
std::vector<ControlOption> presets() {
  std::vector<ControlOption> options;
  for (const CycleHotKeyPreset& preset : cycleHotKeyPresets)
    options.push_back(
        {std::to_string(preset.keyCode), hotKeyKeys(preset.keyCode, preset.modifiers)});
  return options;
}

}  // namespace

SampleForm::SampleForm(MacAppState& state) : state_(state), form_(describe()) {}

Description SampleForm::describe() {
  return {.title = words("General"), .sections = {dictation(), writing(), you()}};
}

Section SampleForm::dictation() {
  return {
      .title = words("Dictation"),
      .rows = {
          {.id = "activationMode",
           .label = words("Shortcut mode"),
           .help = Text([this] {
             return state_.activationMode.get() == "hold"
                        ? words("Dictation lasts for as long as the keys are held.")
                        : words("Press once to start, and once more to stop.");
           }),
           .kind = Choice{bind(state_.activationMode),
                          fixed({{"toggle", words("Toggle")}, {"hold", words("Hold to talk")}})}},
          {.id = "cycle",
           .label = words("Next writing profile"),
           .kind = Shortcut{bindNumber(state_.cycleHotKeyKeyCode), presets}},
          {.id = "sounds",
           .label = words("Play sounds"),
           .help = words("A short sound when a recording starts and when it ends."),
           .kind = Toggle{bind(state_.soundsEnabled)}},
          {.id = "noiseReduction",
           .label = words("Noise reduction"),
           .kind = Toggle{bind(state_.noiseReduction)}},
          {.id = "discreet",
           .label = words("Discreet mode"),
           .help = words("Raises a quiet voice. Needs noise reduction."),
           .kind = Toggle{bind(state_.discreetMode)},
           .isEnabled = [this] { return state_.noiseReduction.get(); }},
          {.id = "level", .label = words("Microphone"), .kind = Level{[this](auto changed) {
                                                          return level_.observe(std::move(changed));
                                                        }}},
          {.id = "access",
           .kind =
               Note{words("This app has Microphone, Accessibility, and Input Monitoring access."),
                    [] { return NoteTone::ready; }}},
      }};
}

Section SampleForm::writing() {
  List vocabulary = listOf(state_.dictionaryVocabulary, {"term", words("Term")},
                           [this](const std::string& term) { state_.addVocabularyTerm(term); });
  vocabulary.emptyText = words("No terms yet");
  List rules =
      listOf(state_.dictionaryReplacements, {{"from", words("Heard")}, {"to", words("Written")}},
             [this](const std::vector<std::string>& rule) {
               state_.addReplacementRule(rule[0], rule[1]);
             });
  rules.emptyText = words("No rules yet");
  return {.title = words("Words"),
          .rows = {{.id = "vocabulary",
                    .label = words("Vocabulary"),
                    .help = words("Names and terms that are spelled as you write them here."),
                    .kind = std::move(vocabulary)},
                   {.id = "rules", .label = words("Replacement rules"), .kind = std::move(rules)}}};
}

Section SampleForm::you() {
  return {.title = words("You"),
          .rows = {
              {.id = "name",
               .label = words("Name"),
               .kind = Field{bind(name_), words("As it is to be written")}},
              {.id = "email",
               .label = words("E-mail"),
               .kind = Field{bind(email_), words("you@example.org")},
               .error = Text([this] {
                 const std::string& email = email_.get();
                 const bool isGood = email.empty() || email.find('@') != std::string::npos;
                 return isGood ? Words() : words("An address has an @ in it.");
               })},
              {.id = "about",
               .label = words("How you write"),
               .kind = Field{bind(about_), words("Short sentences, no jargon…"), FieldStyle::lines},
               .isVisible = [this] { return !name_.get().empty(); }},
              {.id = "reset",
               .label = words("Forget what stands here"),
               .kind = Button{words("Reset"), [this] { reset(); }, ButtonStyle::destructive}}}};
}

void SampleForm::reset() {
  ++timesReset_;
  name_ = std::string();
  email_ = std::string();
  about_ = std::string();
}

}  // namespace quillo::sim
