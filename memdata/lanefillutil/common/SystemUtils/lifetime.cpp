#include "SystemUtils/lifetime.h"
