// Everything the library asks of the system it runs on: one reference to each narrow interface. A host's main (or a
// test, for a scope) installs one platform per process before the library is used, and keeps it alive.
#pragma once

#include "platform/interfaces/AddressBook.h"
#include "platform/interfaces/Artwork.h"
#include "platform/interfaces/Clock.h"
#include "platform/interfaces/Companion.h"
#include "platform/interfaces/Contacts.h"
#include "platform/interfaces/DarwinNotifications.h"
#include "platform/interfaces/DateFormatting.h"
#include "platform/interfaces/Device.h"
#include "platform/interfaces/Dispatch.h"
#include "platform/interfaces/Files.h"
#include "platform/interfaces/Graphics.h"
#include "platform/interfaces/Log.h"
#include "platform/interfaces/MainBundle.h"
#include "platform/interfaces/Messages.h"
#include "platform/interfaces/PropertyLists.h"
#include "platform/interfaces/Runtime.h"
#include "platform/interfaces/Screen.h"
#include "platform/interfaces/Strings.h"
#include "platform/interfaces/UniformTypes.h"

namespace chatsum::platform {

struct Platform {
  Log& log;
  Clock& clock;
  Files& files;
  MainBundle& mainBundle;
  Device& device;
  Runtime& runtime;
  UniformTypes& uniformTypes;
  DateFormatting& dateFormatting;
  Strings& strings;
  PropertyLists& propertyLists;
  Graphics& graphics;
  Artwork& artwork;
  Contacts& contacts;
  AddressBook& addressBook;
  Messages& messages;
  Dispatch& dispatch;
  DarwinNotifications& darwinNotifications;
  Companion& companion;
  Screen& screen;
};

/// Makes the platform current and answers the one before it (nullptr at first). The platform must outlive its use.
Platform* install(Platform* platform);

/// The current platform. One must be installed.
[[nodiscard]] Platform& current();

}  // namespace chatsum::platform
