// What InC.c does, for the test that gives it a server.
#pragma once

#include "capi/pvwapi_c.h"

int signInInC(const pvw_char* url);
int listTabsInC(const pvw_char* url);
int orderTabsInC(const pvw_char* url);
int failInC(const pvw_char* url);
int meetNobodyInC(const pvw_char* url);
int escapeInC(void);
