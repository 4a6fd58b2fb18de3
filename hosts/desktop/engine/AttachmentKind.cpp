#include "hosts/desktop/engine/AttachmentKind.h"

#include <QByteArray>

#include "platform/foundation/PathComponents.h"

namespace chatsum::desktop {
namespace {

constexpr QByteArray::Base64Options kForm = QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals;

AttachmentKind kindOf(const platform::system::SystemUniformTypes& types, std::string_view extension) {
  const std::string type = types.identifierForExtension(extension);
  if (types.conforms(type, platform::kUTTypeImage)) return AttachmentKind::kImage;
  if (types.conforms(type, platform::kUTTypePDF)) return AttachmentKind::kPdf;
  if (types.conforms(type, "public.movie")) return AttachmentKind::kMovie;
  return types.conforms(type, "public.audio") ? AttachmentKind::kAudio : AttachmentKind::kFile;
}

}  // namespace

QString wordOf(AttachmentKind kind) {
  switch (kind) {
    case AttachmentKind::kImage:
      return QStringLiteral("image");
    case AttachmentKind::kPdf:
      return QStringLiteral("pdf");
    case AttachmentKind::kMovie:
      return QStringLiteral("movie");
    case AttachmentKind::kAudio:
      return QStringLiteral("audio");
    case AttachmentKind::kFile:
      break;
  }
  return QStringLiteral("file");
}

AttachmentKind AttachmentKinds::of(std::string_view devicePath) {
  constexpr std::size_t kMostRemembered = 256;  // hostile stores name any number of extensions
  const std::string_view extension = path::extensionView(devicePath);
  if (const auto known = known_.find(extension); known != known_.end()) return known->second;
  if (known_.size() >= kMostRemembered) known_.clear();
  return known_.emplace(extension, kindOf(types_, extension)).first->second;
}

QString idOf(const AttachmentPlace& place) {
  const QByteArray path(place.path.data(), static_cast<qsizetype>(place.path.size()));
  return QString::number(place.device) + u'/' + QString::fromLatin1(path.toBase64(kForm));
}

std::optional<AttachmentPlace> placeOfId(const QString& id) {
  const qsizetype slash = id.indexOf(u'/');
  bool isNumber = false;
  const qulonglong device = id.left(slash).toULongLong(&isNumber);
  if (slash < 0 || !isNumber) return std::nullopt;
  const auto path =
      QByteArray::fromBase64Encoding(id.mid(slash + 1).toLatin1(), kForm | QByteArray::AbortOnBase64DecodingErrors);
  if (!path) return std::nullopt;
  return AttachmentPlace{device, path.decoded.toStdString()};
}

}  // namespace chatsum::desktop
