#include "platform/system/images/formats/HeifLibrary.h"

#include <dlfcn.h>

namespace chatsum::platform::system {
namespace {

template <typename Function>
bool find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
  return function != nullptr;
}

}  // namespace

const HeifLibrary* HeifLibrary::get() {
  static const HeifLibrary kLibrary = [] {
    HeifLibrary loaded;
    void* library = dlopen("libheif.so.1", RTLD_NOW | RTLD_LOCAL);
    if (!library || !loaded.load(library)) loaded = HeifLibrary();
    return loaded;
  }();
  return kLibrary.contextAlloc ? &kLibrary : nullptr;
}

bool HeifLibrary::load(void* library) {
  return find(library, "heif_context_alloc", contextAlloc) && find(library, "heif_context_free", contextFree) &&
         find(library, "heif_context_set_maximum_image_size_limit", contextSetMaximumImageSizeLimit) &&
         find(library, "heif_context_set_max_decoding_threads", contextSetMaxDecodingThreads) &&
         find(library, "heif_context_read_from_reader", contextReadFromReader) &&
         find(library, "heif_context_get_primary_image_handle", contextGetPrimaryImageHandle) &&
         find(library, "heif_image_handle_release", handleRelease) &&
         find(library, "heif_image_handle_get_width", handleGetWidth) &&
         find(library, "heif_image_handle_get_height", handleGetHeight) &&
         find(library, "heif_image_handle_has_alpha_channel", handleHasAlphaChannel) &&
         find(library, "heif_image_handle_is_premultiplied_alpha", handleIsPremultipliedAlpha) &&
         find(library, "heif_decoding_options_alloc", decodingOptionsAlloc) &&
         find(library, "heif_decoding_options_free", decodingOptionsFree) &&
         find(library, "heif_decode_image", decodeImage) &&
         find(library, "heif_image_get_primary_width", imageGetPrimaryWidth) &&
         find(library, "heif_image_get_primary_height", imageGetPrimaryHeight) &&
         find(library, "heif_image_get_plane_readonly", imageGetPlaneReadonly) &&
         find(library, "heif_image_release", imageRelease);
}

}  // namespace chatsum::platform::system
