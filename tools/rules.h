// Rules in words.
#pragma once

#include "appmngr/appmngr.h"

#include <string>

// "10.0.0.5:80", "0:80" for any address.
std::string endpointText(uint32_t address, uint16_t port);

// "text 0-8 min 9: SSH-2.0-", with "off" before it where the direction is not enabled; empty where
// nothing is set.
std::string featureText(const APPMNGR_FEATURE &feature);
