#pragma once

#include <gtest/gtest.h>

#include "core/error.h"

// Expects the statement to raise BadFile with exactly this text.
#define EXPECT_BAD_FILE(statement, text)   \
  try {                                    \
    statement;                             \
    ADD_FAILURE() << "nothing was raised"; \
  } catch (const BadFile& fault) {         \
    EXPECT_STREQ(fault.what(), text);      \
  }
