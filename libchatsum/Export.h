// What the shared library shows: a class or function marked CHATSUM_EXPORT can be called by a program that links it;
// everything else stays inside.
#pragma once

#define CHATSUM_EXPORT __attribute__((visibility("default")))
