#include "hosts/linux/atspi/dbus_values.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QStringList>

namespace quillo::linux_host {
namespace {

// Broken trees tell thousands of these.
constexpr std::size_t mostReferences = 4096;

std::string fromQt(const QString& text) {
  return text.toStdString();
}

bool hasSignature(const QDBusMessage& reply, QLatin1String signature) {
  return reply.type() == QDBusMessage::ReplyMessage && reply.signature() == signature;
}

QVariant firstOf(const QDBusMessage& reply) {
  return reply.arguments().constFirst();
}

QDBusArgument argumentOf(const QVariant& value) {
  return value.value<QDBusArgument>();
}

ObjectReference readReference(const QDBusArgument& argument) {
  QString bus;
  QDBusObjectPath path;
  argument.beginStructure();
  argument >> bus >> path;
  argument.endStructure();
  return {fromQt(bus), fromQt(path.path())};
}

std::vector<ObjectReference> readReferences(const QDBusArgument& argument) {
  std::vector<ObjectReference> references;
  argument.beginArray();
  while (!argument.atEnd()) {
    ObjectReference reference = readReference(argument);
    if (references.size() < mostReferences) references.push_back(std::move(reference));
  }
  argument.endArray();
  return references;
}

// Nothing for an error, and for what is no variant.
std::optional<QVariant> propertyIn(const QDBusMessage& reply) {
  if (!hasSignature(reply, QLatin1String("v"))) return std::nullopt;
  return firstOf(reply).value<QDBusVariant>().variant();
}

}  // namespace

QString toQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::optional<std::string> textIn(const QDBusMessage& reply) {
  if (!hasSignature(reply, QLatin1String("s"))) return std::nullopt;
  return fromQt(firstOf(reply).toString());
}

std::optional<std::int32_t> integerIn(const QDBusMessage& reply) {
  if (!hasSignature(reply, QLatin1String("i"))) return std::nullopt;
  return firstOf(reply).toInt();
}

std::optional<std::uint32_t> unsignedIn(const QDBusMessage& reply) {
  if (!hasSignature(reply, QLatin1String("u"))) return std::nullopt;
  return firstOf(reply).toUInt();
}

std::optional<bool> booleanIn(const QDBusMessage& reply) {
  if (!hasSignature(reply, QLatin1String("b"))) return std::nullopt;
  return firstOf(reply).toBool();
}

std::optional<AtspiStates> statesIn(const QDBusMessage& reply) {
  if (!hasSignature(reply, QLatin1String("au"))) return std::nullopt;
  const auto words = qdbus_cast<QList<uint>>(firstOf(reply));
  std::uint64_t bits = words.isEmpty() ? 0 : words[0];
  if (words.size() > 1) bits |= std::uint64_t{words[1]} << 32;
  return AtspiStates(bits);
}

std::optional<AtspiAttributes> attributesIn(const QDBusMessage& reply) {
  if (!hasSignature(reply, QLatin1String("a{ss}"))) return std::nullopt;
  AtspiAttributes attributes;
  const auto map = qdbus_cast<QMap<QString, QString>>(firstOf(reply));
  for (auto entry = map.begin(); entry != map.end(); ++entry) {
    attributes[fromQt(entry.key())] = fromQt(entry.value());
  }
  return attributes;
}

std::optional<std::vector<std::string>> textsIn(const QDBusMessage& reply) {
  if (!hasSignature(reply, QLatin1String("as"))) return std::nullopt;
  std::vector<std::string> texts;
  for (const QString& text : firstOf(reply).toStringList()) texts.push_back(fromQt(text));
  return texts;
}

std::optional<ObjectReference> referenceIn(const QDBusMessage& reply) {
  if (!hasSignature(reply, QLatin1String("(so)"))) return std::nullopt;
  return readReference(argumentOf(firstOf(reply)));
}

std::optional<std::vector<ObjectReference>> referencesIn(const QDBusMessage& reply) {
  if (!hasSignature(reply, QLatin1String("a(so)"))) return std::nullopt;
  return readReferences(argumentOf(firstOf(reply)));
}

std::optional<std::vector<AtspiRelation>> relationsIn(const QDBusMessage& reply) {
  if (!hasSignature(reply, QLatin1String("a(ua(so))"))) return std::nullopt;
  std::vector<AtspiRelation> relations;
  const QDBusArgument argument = argumentOf(firstOf(reply));
  argument.beginArray();
  while (!argument.atEnd()) {
    AtspiRelation relation;
    argument.beginStructure();
    argument >> relation.type;
    relation.targets = readReferences(argument);
    argument.endStructure();
    relations.push_back(std::move(relation));
  }
  argument.endArray();
  return relations;
}

std::optional<PixelRect> rectangleIn(const QDBusMessage& reply) {
  PixelRect rect;
  if (hasSignature(reply, QLatin1String("(iiii)"))) {
    const QDBusArgument argument = argumentOf(firstOf(reply));
    argument.beginStructure();
    argument >> rect.x >> rect.y >> rect.width >> rect.height;
    argument.endStructure();
    return rect;
  }
  if (!hasSignature(reply, QLatin1String("iiii"))) return std::nullopt;
  const QVariantList numbers = reply.arguments();
  return PixelRect{numbers[0].toInt(), numbers[1].toInt(), numbers[2].toInt(), numbers[3].toInt()};
}

std::optional<std::pair<std::int32_t, std::int32_t>> integersIn(const QDBusMessage& reply) {
  if (!hasSignature(reply, QLatin1String("ii"))) return std::nullopt;
  const QVariantList numbers = reply.arguments();
  return std::pair{numbers[0].toInt(), numbers[1].toInt()};
}

std::optional<std::string> textPropertyIn(const QDBusMessage& reply) {
  const auto value = propertyIn(reply);
  if (!value || value->typeId() != QMetaType::QString) return std::nullopt;
  return fromQt(value->toString());
}

std::optional<std::int32_t> integerPropertyIn(const QDBusMessage& reply) {
  const auto value = propertyIn(reply);
  if (!value || value->typeId() != QMetaType::Int) return std::nullopt;
  return value->toInt();
}

std::optional<double> numberPropertyIn(const QDBusMessage& reply) {
  const auto value = propertyIn(reply);
  if (!value || value->typeId() != QMetaType::Double) return std::nullopt;
  return value->toDouble();
}

std::optional<ObjectReference> referencePropertyIn(const QDBusMessage& reply) {
  const auto value = propertyIn(reply);
  if (!value || value->userType() != qMetaTypeId<QDBusArgument>()) return std::nullopt;
  const QDBusArgument argument = argumentOf(*value);
  if (argument.currentSignature() != QLatin1String("(so)")) return std::nullopt;
  return readReference(argument);
}

}  // namespace quillo::linux_host
