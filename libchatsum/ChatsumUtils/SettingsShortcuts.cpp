// Single settings for callers that need no more.

#include "libchatsum/ChatsumSettings/ChatsumSettings.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"

namespace chatsum {

std::int64_t ChatsumUtils::defaultFileFormat() { return ChatsumSettings::sharedSettings().msgDefaultFileFormat(); }

bool ChatsumUtils::isChatsumOnlyOn() { return ChatsumSettings::sharedSettings().isChatsumEnabled(); }

}  // namespace chatsum
