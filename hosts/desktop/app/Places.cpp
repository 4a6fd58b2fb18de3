#include "hosts/desktop/app/Places.h"

#include <QDir>
#include <QStandardPaths>

namespace chatsum::desktop {
namespace {

// The application whose reports these are; its folder is where the command line has them.
constexpr const char* kApplication = "com.apple.MobileSMS";

}  // namespace

Places placesFor(const QString& home) {
  const QString state = QStringLiteral("desktop.ini"), sample = QStringLiteral("/sample-device");
  if (!home.isEmpty()) {
    const QString folder = QDir::cleanPath(QDir::current().absoluteFilePath(home));
    return {folder, folder + sample, folder + QLatin1Char('/') + state};
  }
  const QString data =
      QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/chatsum");
  const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
  return {data + QLatin1Char('/') + QString::fromUtf8(kApplication), data + sample,
          config + QStringLiteral("/chatsum/") + state};
}

}  // namespace chatsum::desktop
