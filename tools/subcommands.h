// The commands. Each does its work and gives the exit status.
#pragma once

#include "tools/arguments.h"

int packCommand(const Arguments &arguments);
int checkCommand(const Arguments &arguments);
int infoCommand(const Arguments &arguments);
int listCommand(const Arguments &arguments);
int typesCommand(const Arguments &arguments);
int rulesCommand(const Arguments &arguments);
int dnsCommand(const Arguments &arguments);
int xmlCommand(const Arguments &arguments);
int diffCommand(const Arguments &arguments);
int sealCommand(const Arguments &arguments);
int unsealCommand(const Arguments &arguments);
int dumpCommand(const Arguments &arguments);
int exportJsonCommand(const Arguments &arguments);
