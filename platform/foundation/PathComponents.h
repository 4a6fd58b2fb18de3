// The platform's path-component rules on plain strings: "/" between components, none doubled, nothing looked up in a
// file system.
#pragma once

#include <string>
#include <string_view>

namespace chatsum::path {

/// Base and component joined by exactly one "/"; runs of "/" anywhere become one, and one at the end is dropped. An empty
/// base gives the component, an empty component the base.
[[nodiscard]] std::string appending(std::string_view base, std::string_view component);

/// The part behind the last "/", trailing slashes ignored: "c" of "/a/b/c/", "/" of "/".
[[nodiscard]] std::string lastComponent(std::string_view path);

/// The path without its last component: "/a" of "/a/b", "/" of "/a", "" of "a".
[[nodiscard]] std::string deletingLastComponent(std::string_view path);

/// The letters behind the last "." of the last component, case kept; empty when there is no ".", when nothing follows
/// it, or when it is the component's first character (".profile").
[[nodiscard]] std::string extension(std::string_view path);
/// As `extension`, without a copy; valid as long as the path's bytes.
[[nodiscard]] std::string_view extensionView(std::string_view path);

/// The path without "." and extension.
[[nodiscard]] std::string deletingExtension(std::string_view path);

/// The path with "." and the extension behind its last component (trailing slashes dropped).
[[nodiscard]] std::string appendingExtension(std::string_view path, std::string_view extension);

}  // namespace chatsum::path
