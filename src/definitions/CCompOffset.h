#pragma once

#include "definitions/CDataId.h"  // the three stand together: each is a part of the next
