#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hosts/cli/DisplayText.h"
#include "hosts/cli/Invocation.h"
#include "hosts/device/settings/SettingWords.h"
#include "hosts/device/settings/SettingsFile.h"

namespace chatsum::cli {
namespace {

constexpr const char* kCommand = "settings";

struct Options {
  std::optional<std::string> key, value;
};

int showAll(const device::SettingsFile& file, const Console& console) {
  std::vector<std::vector<std::string>> rows;
  for (const device::Setting& setting : device::allSettings()) {
    const Value& value = file.values()[setting.key];
    rows.push_back({std::string(setting.key),
                    device::wordOfValue(setting, value) + (value.isNone() ? " " + say("(default)") : ""),
                    device::said(setting.about)});
  }
  console.out << table({say("SETTING"), say("VALUE"), say("WHAT IT IS FOR")}, rows);
  return kDone;
}

int change(device::SettingsFile& file, const device::Setting& setting, const Value& value, const Console& console) {
  if (auto problem = file.write(setting.key, value)) return console.fail(problem->sentence);
  console.note(say("{0} is now {1}.", setting.key, device::wordOfValue(setting, value)));
  return kDone;
}

/// Why the words make no sense whatever the file holds; none when they do.
std::optional<std::string> refusalOf(const Options& options) {
  if (!options.key) return std::nullopt;
  const device::Setting* setting = device::findSetting(*options.key);
  if (!setting) {
    std::string names;
    for (const device::Setting& known : device::allSettings())
      names.append(names.empty() ? "" : ", ").append(known.key);
    return say("There is no setting '{0}'; these are: {1}.", *options.key, names);
  }
  if (options.value && !device::valueOfWord(*setting, *options.value)) {
    return say("'{0}' is no value of {1}; give {2}.", *options.value, setting->key, device::wordsOf(*setting));
  }
  return std::nullopt;
}

int showOrChange(const Invocation& invocation, const Options& options) {
  const Console& console = invocation.console;
  if (const auto refusal = refusalOf(options)) return console.refuse(*refusal, kCommand);
  const auto home = invocation.writableHome();
  if (!home) return console.fail(home.problem().sentence);
  auto file = device::SettingsFile::read(home.value());
  if (!file) return console.fail(file.problem().sentence);
  if (!options.key) return showAll(file.value(), console);
  const device::Setting& setting = *device::findSetting(*options.key);
  if (options.value) return change(file.value(), setting, *device::valueOfWord(setting, *options.value), console);
  const Value& value = file.value().values()[setting.key];
  console.out << device::wordOfValue(setting, value) << "\n";
  if (value.isNone()) console.note(say("{0} is not set; this is the default.", setting.key));
  return kDone;
}

}  // namespace

void addSettingsCommand(CLI::App& program, Invocation& invocation) {
  CLI::App* command = program.add_subcommand(kCommand, say("Show the settings, or change one of them"));
  const auto options = std::make_shared<Options>();
  command->add_option("KEY", options->key, say("Show this setting only"))->type_name("");
  command
      ->add_option("VALUE", options->value, say("Change it: yes or no; csv, pdf or text; asc or desc; or the number"))
      ->type_name("");
  std::string footer = say("Settings:") + "\n";
  for (const device::Setting& setting : device::allSettings()) {
    footer.append(fmt::format("  {:<36} {}\n", setting.key, device::wordsOf(setting)));
  }
  footer.append(say("They are kept in DIR/Library/Preferences/com.orbelle.chatsum.plist, DIR as --home says."));
  command->footer(footer);
  command->callback([&invocation, options] {
    invocation.command = [&invocation, options] { return showOrChange(invocation, *options); };
  });
}

}  // namespace chatsum::cli
