#pragma once

#define PROP_VALUE_MAX 92
