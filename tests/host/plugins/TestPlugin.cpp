#include "TestPlugin.h"
