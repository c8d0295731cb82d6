// What the user does, and how the trace names it.
#pragma once

#include <string_view>

namespace quillo::sim {

enum class Act {
  speaks,
  presses,
  holds,
  releases,
  pressesInPanel,
  pastesLast,
  hitsTheKeys,
  clearsTheKeyboard,
  clicks,
  changes,
  chooses,
  closesWindow,
  clicksIcon,
  signsIn,
  switchesApplication,
  quitsApplication,
  activatesProgram,
  quitsProgram,
  launchesProgram,
  clicksBadge,
  drags,
  translates,
  dismissesBubble,
  selects,
  placesCaret,
  scrolls,
  unplugs,
  switchesNetwork,
  fillsDisk,
  removesFile,
};

struct ActRow {
  Act act;
  std::string_view name;
  // Names of the fields with its object and its value; empty for none.
  std::string_view object{};
  std::string_view value{};
};

inline constexpr ActRow actRows[] = {
    {Act::speaks, "speaks", "words"},
    {Act::presses, "presses", "keys"},
    {Act::holds, "holds", "keys"},
    {Act::releases, "releases", "keys"},
    {Act::pressesInPanel, "presses in the panel", "key"},
    {Act::pastesLast, "pastes last"},
    {Act::hitsTheKeys, "hits the keys"},
    {Act::clearsTheKeyboard, "clears the keyboard"},
    {Act::clicks, "clicks", "control"},
    {Act::changes, "changes", "control", "value"},
    {Act::chooses, "chooses", "item"},
    {Act::closesWindow, "closes the window"},
    {Act::clicksIcon, "clicks the program's icon"},
    {Act::signsIn, "signs in"},
    {Act::switchesApplication, "switches", "application"},
    {Act::quitsApplication, "quits", "application"},
    {Act::activatesProgram, "activates Quillo"},
    {Act::quitsProgram, "quits Quillo"},
    {Act::launchesProgram, "launches Quillo"},
    {Act::clicksBadge, "clicks the badge", "app"},
    {Act::drags, "drags", "app"},
    {Act::translates, "translates a selection"},
    {Act::dismissesBubble, "dismisses the bubble"},
    {Act::selects, "selects"},
    {Act::placesCaret, "places the caret"},
    {Act::scrolls, "scrolls"},
    {Act::unplugs, "unplugs", "microphone"},
    {Act::switchesNetwork, "network", "", "online"},
    {Act::fillsDisk, "disk", "", "full"},
    {Act::removesFile, "removes", "file"},
};

constexpr const ActRow& rowOf(Act act) {
  return actRows[static_cast<std::size_t>(act)];
}

}  // namespace quillo::sim
