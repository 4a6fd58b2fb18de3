#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "platform/system/types/SystemUniformTypes.h"

namespace chatsum::platform::system {
namespace {

std::vector<std::string> words(std::string_view list) {
  std::istringstream stream{std::string(list)};
  std::vector<std::string> result;
  for (std::string word; stream >> word;) result.push_back(word);
  return result;
}

TEST(UniformTypes, NameEveryParentBeforeItsChildrenSoThereIsNoCycle) {
  std::set<std::string> known;
  for (const auto& type : SystemUniformTypes::table()) {
    for (const auto& parent : words(type.parents))
      EXPECT_TRUE(known.contains(parent)) << type.identifier << " " << parent;
    EXPECT_TRUE(known.insert(std::string(type.identifier)).second) << type.identifier;
  }
  EXPECT_GE(known.size(), 70u);
}

TEST(UniformTypes, GiveEachExtensionToOneTypeInLowerCase) {
  std::map<std::string, std::string> owners;
  for (const auto& type : SystemUniformTypes::table()) {
    for (const auto& extension : words(type.extensions)) {
      const auto [owner, isNew] = owners.emplace(extension, type.identifier);
      EXPECT_TRUE(isNew) << extension << ": " << owner->second << " and " << type.identifier;
      for (const char c : extension) EXPECT_FALSE(c >= 'A' && c <= 'Z') << extension;
      EXPECT_EQ(SystemUniformTypes().identifierForExtension(extension), type.identifier);
    }
  }
}

TEST(UniformTypes, TellPicturesFromOtherFiles) {
  const SystemUniformTypes types;
  for (const char* picture :
       {"jpg", "JPEG", "png", "gif", "tiff", "tif", "heic", "HEIF", "heics", "webp", "bmp", "ico", "svg", "dng"}) {
    EXPECT_TRUE(types.conforms(types.identifierForExtension(picture), kUTTypeImage)) << picture;
  }
  for (const char* other : {"pdf", "txt", "mov", "mp4", "caf", "m4a", "amr", "vcf", "zip", "docx",
                            "pluginPayloadAttachment", "", "unheardof", "jpg ", "jpg png", ".jpg", "j"}) {
    EXPECT_FALSE(types.conforms(types.identifierForExtension(other), kUTTypeImage)) << other;
  }
  EXPECT_TRUE(types.conforms(types.identifierForExtension("PDF"), kUTTypePDF));
  EXPECT_FALSE(types.conforms(types.identifierForExtension("txt"), kUTTypePDF));
}

TEST(UniformTypes, ConformThroughAllTheirParents) {
  const SystemUniformTypes types;
  EXPECT_TRUE(types.conforms("public.svg-image", "public.xml"));
  EXPECT_TRUE(types.conforms("public.svg-image", "public.text"));
  EXPECT_TRUE(types.conforms("public.vcard", "public.contact"));
  EXPECT_TRUE(types.conforms("com.apple.m4a-audio", "public.audio"));
  EXPECT_TRUE(types.conforms("public.comma-separated-values-text", "public.item"));
  EXPECT_FALSE(types.conforms("public.image", "public.jpeg"));
  EXPECT_TRUE(types.conforms("Public.JPEG", "public.Image"));
}

TEST(UniformTypes, MakeUpATypeForAnUnknownExtension) {
  const SystemUniformTypes types;
  const std::string made = types.identifierForExtension("xyzzy");
  EXPECT_TRUE(made.starts_with("dyn."));
  EXPECT_EQ(made, types.identifierForExtension("XYZZY"));
  EXPECT_NE(made, types.identifierForExtension("xyzz"));
  EXPECT_TRUE(types.conforms(made, made));
  EXPECT_FALSE(types.conforms(made, "public.item"));
  EXPECT_FALSE(types.conforms("public.item", made));
  EXPECT_TRUE(types.identifierForExtension("").starts_with("dyn."));
  EXPECT_FALSE(types.conforms(types.identifierForExtension(""), "public.data"));
}

}  // namespace
}  // namespace chatsum::platform::system
