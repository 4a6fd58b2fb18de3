// What messages call their files. No state, any thread.
#pragma once

#include <optional>
#include <string_view>

namespace chatsum::device {

/// A path of the user's home as the rest below it: "Library/SMS/a.png" for "~/Library/SMS/a.png", "User/Library/…",
/// "/User/Library/…", "/var/mobile/Library/…", "/private/var/mobile/Library/…" and "/Users/maya/Library/…". None for
/// every other path.
[[nodiscard]] std::optional<std::string_view> pathInUsersHome(std::string_view devicePath);

/// The same below the folder that the Messages store stands in, which an iPhone calls Library/SMS and a Mac
/// Library/Messages: "Attachments/ab/a.png". The rest may hold "..".
[[nodiscard]] std::optional<std::string_view> pathBesideStore(std::string_view devicePath);

}  // namespace chatsum::device
