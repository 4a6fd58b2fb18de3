// Uniform type identifiers: what kind of file a file-name extension promises. Any thread, several at once.
#pragma once

#include <string>
#include <string_view>

namespace chatsum::platform {

inline constexpr const char* kUTTypeImage = "public.image";
inline constexpr const char* kUTTypePDF = "com.adobe.pdf";

class UniformTypes {
 public:
  virtual ~UniformTypes() = default;
  /// The preferred identifier for an extension, ignoring case. An unknown or empty extension gives a made-up
  /// identifier that conforms to nothing but itself.
  [[nodiscard]] virtual std::string identifierForExtension(std::string_view extension) const = 0;
  /// True when the identifiers are equal or the first stands below the second in the table of types.
  [[nodiscard]] virtual bool conforms(std::string_view identifier, std::string_view to) const = 0;
};

}  // namespace chatsum::platform
