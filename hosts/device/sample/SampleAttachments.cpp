#include "hosts/device/sample/SampleAttachments.h"

#include "hosts/device/sample/SampleFiles.h"
#include "hosts/device/sample/SamplePictures.h"

namespace chatsum::device {

namespace {

constexpr int kQuarterTurnClockwise = 6;

SampleAttachment jpeg(std::string bytes) { return {"public.jpeg", "image/jpeg", std::move(bytes)}; }

SampleAttachment pdf(std::string_view heading, std::string_view lines) {
  return {"com.adobe.pdf", "application/pdf", onePagePdf(heading, lines)};
}

}  // namespace

SampleAttachment sampleAttachment(std::string_view name) {
  if (name == "IMG_0001.jpeg") return jpeg(std::string(hillsJpeg()));
  if (name == "IMG_0233.jpeg") return jpeg(std::string(boatJpeg()));
  if (name == "IMG_0412.jpeg") return jpeg(withOrientation(cakeJpeg(), kQuarterTurnClockwise));
  if (name == "sunset.png") return {"public.png", "image/png", sunsetPng()};
  if (name == "heart.png") return {"public.png", "image/png", heartPng()};
  if (name == "blink.gif") return {"com.compuserve.gif", "image/gif", blinkingGif()};
  if (name == "receipt.bmp") return {"com.microsoft.bmp", "image/bmp", receiptBmp()};
  if (name == "IMG_0873.mov") {
    return {"com.apple.quicktime-movie", "video/quicktime", filmOf(boatJpeg(), boatJpeg(), 128, 96)};
  }
  if (name == "Audio Message.caf") return {"com.apple.coreaudio-format", "audio/x-caf", voiceCaf()};
  if (name == "Jonas.vcf") return {"public.vcard", "text/vcard", contactVcf("Jonas (summer)", "+15550100177")};
  if (name == "Booking.pdf") {
    return pdf("Your booking", "Casey Morgan, 1 person\n14 October, arrival 11:25\n19 October, departure 16:40");
  }
  if (name == "Invitation.pdf") {
    return pdf("We are a co-op now!", "Party at the workshop: 6 April, from 4 pm.\nPlease bring a chair.");
  }
  if (name == "Hut weekend.pdf") {
    return pdf("Hut weekend",
               "Meet at the bus stop, line 47, at 8:15 (8:30).\nBring: boots, a sleeping bag, a torch.\n"
               "No open fire, no accordion.");
  }
  // The store has a path, but the file is gone from the device.
  if (name == "Scores.pdf") return {"com.adobe.pdf", "application/pdf", std::nullopt};
  // Never downloaded.
  if (name == "IMG_1190.HEIC") return {"public.heic", "image/heic", std::nullopt, false};
  return {"public.data", "application/octet-stream", std::nullopt};
}

}  // namespace chatsum::device
