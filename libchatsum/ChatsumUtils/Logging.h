// Stands here until every include names the new place.
#pragma once
#include "libchatsum/Logging/Logging.h"
