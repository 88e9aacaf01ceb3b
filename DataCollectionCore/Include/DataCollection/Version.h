// The version of these headers. The module has the same version in its log's banner and in its file.
#pragma once

#define ORV_ACTION_MANAGER_VERSION_MAJOR 0
#define ORV_ACTION_MANAGER_VERSION_MINOR 1
#define ORV_ACTION_MANAGER_VERSION_PATCH 0
#define ORV_ACTION_MANAGER_VERSION_BUILD 0

// The first three parts as one number that grows with each release: 2.14.3 is 2014003.
#define ORV_ACTION_MANAGER_VERSION                                                          \
    (ORV_ACTION_MANAGER_VERSION_MAJOR * 1000000 + ORV_ACTION_MANAGER_VERSION_MINOR * 1000 + \
     ORV_ACTION_MANAGER_VERSION_PATCH)
