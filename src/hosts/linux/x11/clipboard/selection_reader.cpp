#include "hosts/linux/x11/clipboard/selection_reader.h"

#include <algorithm>
#include <utility>

namespace quillo::linux_host {
namespace {

// More forms than any program offers; an owner that lists more is read so far.
constexpr std::size_t mostTargets = 200;

// Text is wanted most and comes fastest; pictures are made on demand.
constexpr int textRank = 0;
constexpr int otherRank = 1;
constexpr int pictureRank = 2;

int rank(std::string_view target) {
  if (target.starts_with("image/")) return pictureRank;
  const bool isText = target.starts_with("text/") || target == "UTF8_STRING" || target == "STRING";
  return isText ? textRank : otherRank;
}

}  // namespace

SelectionReader::SelectionReader(X11Connection& connection, xcb_atom_t selection,
                                 xcb_window_t window, Wanted wanted)
    : connection_(connection),
      selection_(selection),
      window_(window),
      wanted_(wanted),
      targetsAtom_(connection.atom("TARGETS")),
      incrementalAtom_(connection.atom("INCR")) {
  if (wanted == Wanted::everything) {
    convert(targetsAtom_, targetsAtom_);
  } else {
    convertAll(plainTextTargets());
  }
}

bool SelectionReader::isSettled(const Conversion& conversion) {
  return conversion.state != State::asked && conversion.state != State::incremental;
}

bool SelectionReader::isAnswered() const {
  return knowsTargets_ && std::all_of(conversions_.begin(), conversions_.end(), isSettled);
}

bool SelectionReader::isDone() const {
  if (wanted_ == Wanted::plainText) {
    // They were asked for in the order of preference.
    const auto best = std::find_if(
        conversions_.begin(), conversions_.end(),
        [](const Conversion& conversion) { return conversion.state != State::refused; });
    return best == conversions_.end() || best->state == State::received;
  }
  return isAnswered();
}

SelectionContent SelectionReader::takeContent() {
  SelectionContent content;
  for (Conversion& conversion : conversions_) {
    if (conversion.state != State::received) continue;
    content.push_back(std::move(conversion.form));
    conversion.state = State::taken;
  }
  return content;
}

std::vector<std::string> SelectionReader::missingTargets() const {
  std::vector<std::string> missing;
  for (const Conversion& conversion : conversions_) {
    if (!isSettled(conversion)) missing.push_back(conversion.form.target);
  }
  return missing;
}

void SelectionReader::convert(xcb_atom_t target, xcb_atom_t property) {
  xcb_convert_selection(connection_.get(), window_, selection_, target, property, XCB_CURRENT_TIME);
}

void SelectionReader::convertAll(const std::vector<std::string>& targets) {
  knowsTargets_ = true;
  std::vector<std::string> propertyNames;
  for (std::size_t index = 0; index < targets.size(); ++index) {
    propertyNames.push_back("QUILLO_SELECTION_" + std::to_string(index));
  }
  const std::vector<xcb_atom_t> properties = connection_.atoms(propertyNames);
  const std::vector<xcb_atom_t> atoms = connection_.atoms(targets);
  for (std::size_t index = 0; index < targets.size(); ++index) {
    Conversion conversion{atoms[index], properties[index], State::asked, {}};
    conversion.form.target = targets[index];
    conversions_.push_back(std::move(conversion));
  }
  for (const int wanted : {textRank, otherRank, pictureRank}) {
    for (const Conversion& conversion : conversions_) {
      if (rank(conversion.form.target) == wanted) convert(conversion.target, conversion.property);
    }
  }
}

void SelectionReader::handle(const xcb_generic_event_t& event) {
  const std::uint8_t type = event.response_type & 0x7f;
  if (type == XCB_SELECTION_NOTIFY) {
    const auto& notify = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
    if (notify.requestor != window_ || notify.selection != selection_) return;
    if (!knowsTargets_) {
      if (notify.target == targetsAtom_) targetsArrived(notify);
      return;
    }
    for (Conversion& conversion : conversions_) {
      if (conversion.target == notify.target && conversion.state == State::asked) {
        conversionArrived(conversion, notify.property);
        return;
      }
    }
  } else if (type == XCB_PROPERTY_NOTIFY) {
    const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (notify.window != window_ || notify.state != XCB_PROPERTY_NEW_VALUE) return;
    for (Conversion& conversion : conversions_) {
      if (conversion.property == notify.atom && conversion.state == State::incremental) {
        chunkArrived(conversion);
        return;
      }
    }
  }
}

void SelectionReader::targetsArrived(const xcb_selection_notify_event_t& event) {
  std::vector<std::string> names;
  if (event.property != XCB_ATOM_NONE) {
    const auto value =
        connection_.property(window_, event.property, X11Connection::AfterReading::remove);
    if (value) names = connection_.atomNames(value->words());
  }
  std::vector<std::string> targets;
  for (std::string& name : names) {
    const bool isKnown = std::find(targets.begin(), targets.end(), name) != targets.end();
    if (isContentTarget(name) && !isKnown && targets.size() < mostTargets) {
      targets.push_back(std::move(name));
    }
  }
  convertAll(targets);
}

void SelectionReader::conversionArrived(Conversion& conversion, xcb_atom_t property) {
  auto value = property == XCB_ATOM_NONE
                   ? std::nullopt
                   : connection_.property(window_, property, X11Connection::AfterReading::remove);
  if (!value) {
    conversion.state = State::refused;
    return;
  }
  if (value->type == incrementalAtom_) {
    // Having removed the property asks for the first chunk.
    conversion.state = State::incremental;
    return;
  }
  conversion.form.type = connection_.atomName(value->type);
  conversion.form.format = value->format;
  conversion.form.bytes = std::move(value->bytes);
  conversion.state = State::received;
}

void SelectionReader::chunkArrived(Conversion& conversion) {
  auto chunk =
      connection_.property(window_, conversion.property, X11Connection::AfterReading::remove);
  if (!chunk) return;
  conversion.form.type = connection_.atomName(chunk->type);
  conversion.form.format = chunk->format;
  if (chunk->bytes.empty()) {
    conversion.state = State::received;
  } else {
    conversion.form.bytes += chunk->bytes;
  }
}

}  // namespace quillo::linux_host
