// The functions of libheif that are used, loaded at the first HEIF picture: the library brings four video codecs along,
// which would cost every start of the program more than all its own work. Any thread; never unloaded.
#pragma once

#include <libheif/heif.h>

namespace chatsum::platform::system {

struct HeifLibrary {
  /// nullptr when libheif is not installed.
  [[nodiscard]] static const HeifLibrary* get();

  decltype(&heif_context_alloc) contextAlloc = nullptr;
  decltype(&heif_context_free) contextFree = nullptr;
  decltype(&heif_context_set_maximum_image_size_limit) contextSetMaximumImageSizeLimit = nullptr;
  decltype(&heif_context_set_max_decoding_threads) contextSetMaxDecodingThreads = nullptr;
  decltype(&heif_context_read_from_reader) contextReadFromReader = nullptr;
  decltype(&heif_context_get_primary_image_handle) contextGetPrimaryImageHandle = nullptr;
  decltype(&heif_image_handle_release) handleRelease = nullptr;
  decltype(&heif_image_handle_get_width) handleGetWidth = nullptr;
  decltype(&heif_image_handle_get_height) handleGetHeight = nullptr;
  decltype(&heif_image_handle_has_alpha_channel) handleHasAlphaChannel = nullptr;
  decltype(&heif_image_handle_is_premultiplied_alpha) handleIsPremultipliedAlpha = nullptr;
  decltype(&heif_decoding_options_alloc) decodingOptionsAlloc = nullptr;
  decltype(&heif_decoding_options_free) decodingOptionsFree = nullptr;
  decltype(&heif_decode_image) decodeImage = nullptr;
  decltype(&heif_image_get_primary_width) imageGetPrimaryWidth = nullptr;
  decltype(&heif_image_get_primary_height) imageGetPrimaryHeight = nullptr;
  decltype(&heif_image_get_plane_readonly) imageGetPlaneReadonly = nullptr;
  decltype(&heif_image_release) imageRelease = nullptr;

 private:
  bool load(void* library);
};

}  // namespace chatsum::platform::system
