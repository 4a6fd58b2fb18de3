#include "platform/system/messages/SystemMessages.h"

namespace chatsum::platform::system {

const std::vector<std::string>& SystemMessages::imageMediaTypes() const {
  static const std::vector<std::string> kTypes = {"public.jpeg",        "public.png",
                                                  "com.compuserve.gif", "public.tiff",
                                                  "public.heic",        "public.heif",
                                                  "public.heics",       "org.webmproject.webp",
                                                  "com.microsoft.bmp",  "public.jpeg-2000",
                                                  "com.microsoft.ico",  "public.avif",
                                                  "public.svg-image",   "public.camera-raw-image"};
  return kTypes;
}

}  // namespace chatsum::platform::system
