// A fixed table of uniform type identifiers: the same answers on every machine. Any thread.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "platform/interfaces/UniformTypes.h"

namespace chatsum::platform::system {

/// One type: its parents and its file-name extensions (lower case), each list separated by blanks. The first type
/// that lists an extension is the preferred one.
struct UniformType {
  std::string_view identifier;
  std::string_view parents;
  std::string_view extensions;
};

class SystemUniformTypes final : public UniformTypes {
 public:
  /// Unknown: "dyn." and the lower-case extension in hexadecimal, so that equal extensions have equal identifiers.
  [[nodiscard]] std::string identifierForExtension(std::string_view extension) const override;
  [[nodiscard]] bool conforms(std::string_view identifier, std::string_view to) const override;

  /// The whole table, parents before children.
  [[nodiscard]] static std::span<const UniformType> table();
};

}  // namespace chatsum::platform::system
