#include "hosts/device/backup/BackupPlists.h"

#include <optional>

#include "hosts/device/language/Say.h"
#include "hosts/device/plist/PlistValue.h"

namespace chatsum::device {
namespace {

constexpr const char* kInfo = "Info.plist";
constexpr const char* kStatus = "Status.plist";
constexpr const char* kManifest = "Manifest.plist";
constexpr std::string_view kFinished = "finished";
constexpr std::size_t kLongestState = 40;

/// Reads one list; a none value with a warning that ends in what is lost when it cannot be.
PlistValue readList(const BackupFolder& folder, const char* name, const std::string& loss, SourceFacts& facts) {
  std::string trouble = say("is missing");
  if (folder.ownFile(name)) {
    const auto bytes = folder.readOwnFile(name, plist::kMostBytes);
    auto value = bytes ? parsePlist(*bytes) : std::nullopt;
    if (value && value->asDictionary()) return std::move(*value);
    trouble = bytes ? say("is damaged") : say("cannot be read");
  }
  facts.warnings.push_back(say("'{0}/{1}' {2}, so {3}.", folder.path(), name, trouble, loss));
  return PlistValue();
}

std::string dataAt(const PlistValue& list, std::string_view key) {
  const std::string* bytes = list[key].asData();
  return bytes ? *bytes : std::string();
}

void fill(std::string& fact, std::string value) {
  if (fact.empty()) fact = std::move(value);
}

void fillFromInfo(const PlistValue& info, SourceFacts& facts) {
  facts.deviceName = info.stringAt("Device Name");
  fill(facts.deviceName, info.stringAt("Display Name"));
  facts.productType = info.stringAt("Product Type");
  facts.systemVersion = info.stringAt("Product Version");
  facts.buildVersion = info.stringAt("Build Version");
  facts.serialNumber = info.stringAt("Serial Number");
  facts.deviceIdentifier = info.stringAt("Unique Identifier");
  fill(facts.deviceIdentifier, info.stringAt("Target Identifier"));
  facts.phoneNumber = info.stringAt("Phone Number");
  facts.date = info["Last Backup Date"].asDate();
}

// What Info.plist does not say stands here, too.
void fillFromManifest(const PlistValue& manifest, SourceFacts& facts) {
  const PlistValue& device = manifest["Lockdown"];
  fill(facts.deviceName, device.stringAt("DeviceName"));
  fill(facts.productType, device.stringAt("ProductType"));
  fill(facts.systemVersion, device.stringAt("ProductVersion"));
  fill(facts.buildVersion, device.stringAt("BuildVersion"));
  fill(facts.serialNumber, device.stringAt("SerialNumber"));
  fill(facts.deviceIdentifier, device.stringAt("UniqueDeviceID"));
  if (!facts.date) facts.date = manifest["Date"].asDate();
}

void judgeStatus(const PlistValue& status, const std::string& path, SourceFacts& facts) {
  if (!facts.date) facts.date = status["Date"].asDate();
  const std::string state = status.stringAt("SnapshotState");
  if (state.empty() || state == kFinished) return;
  facts.warnings.push_back(
      say("The backup '{0}' was not finished (its state is '{1}'), so some of what the device held may be missing.",
          path, state.substr(0, kLongestState)));
}

}  // namespace

BackupPlists BackupPlists::read(const BackupFolder& folder) {
  BackupPlists lists;
  SourceFacts& facts = lists.facts;
  facts.kind = SourceKind::kBackup;
  facts.path = folder.path();
  fillFromInfo(readList(folder, kInfo, say("the backup says less of the device it comes from"), facts), facts);
  const PlistValue manifest =
      readList(folder, kManifest,
               say("the backup does not say whether it is encrypted, and is taken for one that is not"), facts);
  fillFromManifest(manifest, facts);
  judgeStatus(readList(folder, kStatus, say("the backup does not say whether it was finished"), facts), folder.path(),
              facts);
  facts.isEncrypted = manifest["IsEncrypted"].asBool().value_or(false);
  if (!facts.isEncrypted) return lists;
  lists.keyBag = dataAt(manifest, "BackupKeyBag");
  lists.manifestKey = dataAt(manifest, "ManifestKey");
  return lists;
}

}  // namespace chatsum::device
