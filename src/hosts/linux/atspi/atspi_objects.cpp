#include "hosts/linux/atspi/atspi_objects.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

namespace quillo::linux_host {
namespace {

constexpr std::size_t mostEntries = 512;
// Nobody tells of an object that is not watched.
constexpr Duration unwatchedLife = std::chrono::milliseconds(250);
// An event may have been lost, or the toolkit may send none: looked at again without waiting.
constexpr Duration watchedLife = std::chrono::seconds(15);
// Pages and panes go on moving for a while after the user has touched them.
constexpr Duration settling = std::chrono::milliseconds(400);
// Of a place after which the user has done something: good enough while the new one is on its way.
constexpr Duration oldPlaceLife = std::chrono::seconds(1);
// What moves without the user: messages that arrive, for instance.
constexpr Duration stillPlaceLife = std::chrono::seconds(3);

constexpr std::uint32_t labelledBy = 2;
constexpr std::uint32_t screenCoordinates = 0;

constexpr std::size_t kindCalls = 4;
constexpr std::size_t wordCalls = 5;
constexpr std::size_t placeCalls = 1;

std::vector<AtspiCall> callsFor(const ObjectReference& object, unsigned facets) {
  std::vector<AtspiCall> calls;
  if ((facets & AtspiObjects::kind) != 0) {
    calls.push_back({object, atspi::accessible, "GetRole"});
    calls.push_back({object, atspi::accessible, "GetState"});
    calls.push_back({object, atspi::accessible, "GetAttributes"});
    calls.push_back(propertyOf(object, atspi::accessible, "Parent"));
  }
  if ((facets & AtspiObjects::words) != 0) {
    calls.push_back(propertyOf(object, atspi::accessible, "Name"));
    calls.push_back(propertyOf(object, atspi::accessible, "Description"));
    calls.push_back({object, atspi::accessible, "GetLocalizedRoleName"});
    calls.push_back({object, atspi::accessible, "GetRelationSet"});
    calls.push_back({object, atspi::accessible, "GetInterfaces"});
  }
  if ((facets & AtspiObjects::place) != 0) {
    calls.push_back({object, atspi::component, "GetExtents", {QVariant(screenCoordinates)}});
  }
  if ((facets & AtspiObjects::address) != 0) {
    calls.push_back({object, atspi::document, "GetAttributes"});
  }
  return calls;
}

// Nothing when the object does not know its own role: it has gone.
std::optional<ObjectKind> readKind(std::span<const QDBusMessage> replies) {
  const auto role = unsignedIn(replies[0]);
  const auto states = statesIn(replies[1]);
  if (!role || !states || states->has(AtspiState::defunct)) return std::nullopt;
  return ObjectKind{static_cast<AtspiRole>(*role), *states,
                    attributesIn(replies[2]).value_or(AtspiAttributes()),
                    referencePropertyIn(replies[3]).value_or(ObjectReference())};
}

ObjectWords readWords(std::span<const QDBusMessage> replies) {
  ObjectWords words;
  words.name = textPropertyIn(replies[0]).value_or("");
  words.description = textPropertyIn(replies[1]).value_or("");
  words.roleName = textIn(replies[2]).value_or("");
  for (const AtspiRelation& relation :
       relationsIn(replies[3]).value_or(std::vector<AtspiRelation>())) {
    if (relation.type == labelledBy && !relation.targets.empty() && !words.label) {
      words.label = relation.targets.front();
    }
  }
  for (const std::string& interface : textsIn(replies[4]).value_or(std::vector<std::string>())) {
    if (interface == atspi::text) words.hasText = true;
    if (interface == atspi::value) words.hasValue = true;
    if (interface == atspi::collection) words.hasCollection = true;
  }
  return words;
}

// Toolkits give sizes of nothing to what they do not show.
std::optional<PixelRect> readPlace(const QDBusMessage& reply) {
  const auto rect = rectangleIn(reply);
  if (!rect || rect->width <= 0 || rect->height <= 0) return std::nullopt;
  return rect;
}

std::string readAddress(const QDBusMessage& reply) {
  const auto attributes = attributesIn(reply).value_or(AtspiAttributes());
  const std::string_view address = attributeOf(attributes, "URI");
  return std::string(address.empty() ? attributeOf(attributes, "DocURL") : address);
}

}  // namespace

AtspiObjects::AtspiObjects(MainThread& mainThread, AtspiBus& bus, AtspiEvents& events,
                           LastInput lastInput)
    : mainThread_(mainThread), bus_(bus), events_(events), lastInput_(std::move(lastInput)) {}

std::optional<MonotonicTime> AtspiObjects::learnedAt(const Entry& entry, Facet facet) {
  switch (facet) {
    case kind:
      return entry.kind ? std::optional(entry.kindAt) : std::nullopt;
    case words:
      return entry.words ? std::optional(entry.wordsAt) : std::nullopt;
    case place:
      return entry.place ? std::optional(entry.placeAt) : std::nullopt;
    case address:
      return entry.address ? std::optional(entry.addressAt) : std::nullopt;
  }
  return std::nullopt;
}

AtspiObjects::Freshness AtspiObjects::freshness(const ObjectReference& object, const Entry& entry,
                                                Facet facet) const {
  const auto at = learnedAt(entry, facet);
  if (!at) return Freshness::unknown;
  if (facet == place) return freshnessOfPlace(entry);
  const Duration age = mainThread_.now() - *at;
  if (!events_.isWatched(object)) {
    return age < unwatchedLife ? Freshness::fresh : Freshness::unknown;
  }
  return age < watchedLife ? Freshness::fresh : Freshness::old;
}

AtspiObjects::Freshness AtspiObjects::freshnessOfPlace(const Entry& entry) const {
  const Duration age = mainThread_.now() - entry.placeAt;
  if (entry.placeAt - lastInput_() >= settling) {
    return age < stillPlaceLife ? Freshness::fresh : Freshness::old;
  }
  return age < oldPlaceLife ? Freshness::old : Freshness::unknown;
}

// Asks for what is unknown, and has what is old looked at again for the next time.
AtspiObjects::Entry* AtspiObjects::known(const ObjectReference& object, Facet facet) {
  const auto found = entries_.find(object);
  const Freshness state =
      found == entries_.end() ? Freshness::unknown : freshness(object, found->second, facet);
  if (state == Freshness::unknown) return learn(object, facet) ? &entries_[object] : nullptr;
  if (state == Freshness::old) learnLater(object, facet);
  return &found->second;
}

const ObjectKind* AtspiObjects::kindOf(const ObjectReference& object) {
  const Entry* entry = known(object, kind);
  return entry == nullptr || !entry->kind ? nullptr : &*entry->kind;
}

const ObjectWords* AtspiObjects::wordsOf(const ObjectReference& object) {
  const Entry* entry = known(object, words);
  return entry == nullptr || !entry->words ? nullptr : &*entry->words;
}

std::optional<PixelRect> AtspiObjects::placeOf(const ObjectReference& object) {
  const Entry* entry = known(object, place);
  return entry == nullptr || !entry->place ? std::nullopt : *entry->place;
}

std::string AtspiObjects::addressOf(const ObjectReference& object) {
  const Entry* entry = known(object, address);
  return entry == nullptr ? std::string() : entry->address.value_or("");
}

bool AtspiObjects::learn(const ObjectReference& object, unsigned facets) {
  if (object.isNull() || !bus_.isReachable()) return false;
  events_.listen();
  unsigned wanted = 0;
  if (const auto found = entries_.find(object); found != entries_.end()) {
    for (const Facet facet : std::array{kind, words, place, address}) {
      if ((facets & facet) != 0 && freshness(object, found->second, facet) == Freshness::unknown) {
        wanted |= facet;
      }
    }
    if (wanted == 0) return true;
  } else {
    wanted = facets;
  }
  events_.watch(object);
  const auto replies = bus_.ask(callsFor(object, wanted));
  return !replies.empty() && take(object, wanted, replies);
}

void AtspiObjects::learnLater(const ObjectReference& object, unsigned facets, int ancestors) {
  if (object.isNull() || !bus_.isReachable()) return;
  events_.listen();
  makeRoom();
  Entry& entry = entries_[object];
  if (entry.isBeingLearned) return;
  events_.watch(object);  // first, so that no change falls between the answer and the watch
  entry.isBeingLearned = bus_.askLater(callsFor(object, facets),
                                       [this, object, facets, ancestors](const auto& replies) {
                                         learnedLater(object, facets, ancestors, replies);
                                       });
}

unsigned AtspiObjects::facetsOf(const Entry& entry) {
  unsigned facets = 0;
  for (const Facet facet : std::array{kind, words, place, address}) {
    if (learnedAt(entry, facet)) facets |= facet;
  }
  return facets;
}

void AtspiObjects::changed(const ObjectReference& object) {
  const auto found = entries_.find(object);
  if (found == entries_.end()) return;
  if (found->second.isBeingLearned) {
    found->second.changedMeanwhile = true;
    return;
  }
  learnLater(object, facetsOf(found->second));
  const auto now = entries_.find(object);
  if (now != entries_.end() && !now->second.isBeingLearned) entries_.erase(now);
}

// What changes faster than it can be learned is learned again when somebody looks.
void AtspiObjects::learnedLater(const ObjectReference& object, unsigned facets, int ancestors,
                                const AtspiBus::Replies& replies) {
  const auto found = entries_.find(object);
  if (found == entries_.end()) return;
  const bool changedMeanwhile = std::exchange(found->second.changedMeanwhile, false);
  found->second.isBeingLearned = false;
  if (replies.empty() || !take(object, facets, replies)) return;
  if (changedMeanwhile) {
    Entry& entry = entries_[object];
    entry.kindAt = entry.wordsAt = entry.addressAt = mainThread_.now() + (-watchedLife);
    entry.placeAt = mainThread_.now() + (-stillPlaceLife);
  }
  if (ancestors == 0) return;
  const auto& learned = entries_[object].kind;
  if (learned && learned->role != AtspiRole::application)
    learnLater(learned->parent, kind, ancestors - 1);
}

bool AtspiObjects::take(const ObjectReference& object, unsigned facets,
                        const AtspiBus::Replies& replies) {
  std::span<const QDBusMessage> left(replies);
  const MonotonicTime now = mainThread_.now();
  std::optional<ObjectKind> newKind;
  if ((facets & kind) != 0) {
    newKind = readKind(left.first(kindCalls));
    left = left.subspan(kindCalls);
    if (!newKind) {
      entries_.erase(object);
      return false;
    }
  }
  makeRoom();
  Entry& entry = entries_[object];
  if (newKind) {
    entry.kind = std::move(newKind);
    entry.kindAt = now;
  }
  if ((facets & words) != 0) {
    entry.words = readWords(left.first(wordCalls));
    entry.wordsAt = now;
    left = left.subspan(wordCalls);
  }
  if ((facets & place) != 0) {
    entry.place = readPlace(left.front());
    entry.placeAt = now;
    left = left.subspan(placeCalls);
  }
  if ((facets & address) != 0) {
    entry.address = readAddress(left.front());
    entry.addressAt = now;
  }
  return true;
}

void AtspiObjects::makeRoom() {
  if (entries_.size() >= mostEntries) entries_.clear();
}

std::optional<std::vector<ObjectReference>> AtspiObjects::childrenOf(
    const ObjectReference& object) {
  if (object.isNull()) return std::nullopt;
  return referencesIn(bus_.askOne({object, atspi::accessible, "GetChildren"}));
}

void AtspiObjects::forgetApplication(const std::string& bus) {
  std::erase_if(entries_, [&bus](const auto& entry) { return entry.first.bus == bus; });
}

}  // namespace quillo::linux_host
