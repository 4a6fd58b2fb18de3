#include "platform/foundation/PathComponents.h"

namespace chatsum::path {
namespace {

std::string_view withoutTrailingSlashes(std::string_view path) {
  while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
  return path;
}

std::string_view last(std::string_view path) {
  path = withoutTrailingSlashes(path);
  if (path == "/") return path;
  const auto slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

/// The bytes of "." and extension at the end of the path, 0 when it has none.
std::size_t suffixLength(std::string_view path) {
  const std::string_view name = last(path);
  const auto dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0 || dot + 1 == name.size()) return 0;
  return name.size() - dot;
}

}  // namespace

std::string appending(std::string_view base, std::string_view component) {
  std::string result;
  result.reserve(base.size() + component.size() + 1);
  const auto append = [&](std::string_view part) {
    for (const char c : part) {
      if (c != '/' || result.empty() || result.back() != '/') result += c;
    }
  };
  append(base);
  if (!base.empty() && !component.empty()) append("/");
  append(component);
  return std::string(withoutTrailingSlashes(result));
}

std::string lastComponent(std::string_view path) { return std::string(last(path)); }

std::string deletingLastComponent(std::string_view path) {
  path = withoutTrailingSlashes(path);
  const auto slash = path.rfind('/');
  if (slash == std::string_view::npos) return "";
  return std::string(withoutTrailingSlashes(path.substr(0, slash == 0 ? 1 : slash)));
}

std::string_view extensionView(std::string_view path) {
  path = withoutTrailingSlashes(path);
  const std::size_t length = suffixLength(path);
  return length ? path.substr(path.size() - length + 1) : std::string_view();
}

std::string extension(std::string_view path) { return std::string(extensionView(path)); }

std::string deletingExtension(std::string_view path) {
  path = withoutTrailingSlashes(path);
  return std::string(path.substr(0, path.size() - suffixLength(path)));
}

std::string appendingExtension(std::string_view path, std::string_view extension) {
  return std::string(withoutTrailingSlashes(path)) + "." + std::string(extension);
}

}  // namespace chatsum::path
