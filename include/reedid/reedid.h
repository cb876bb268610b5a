/**
 * @file reedid.h
 * the whole interface. */
#ifndef REEDID_REEDID_H
#define REEDID_REEDID_H

#include "reedid/cea.h"
#include "reedid/cea_display.h"
#include "reedid/cea_hdmi.h"
#include "reedid/cea_media.h"
#include "reedid/cea_vendor.h"
#include "reedid/displayid.h"
#include "reedid/displayid_blocks.h"
#include "reedid/extensions.h"
#include "reedid/image.h"
#include "reedid/offers.h"
#include "reedid/tags.h"
#include "reedid/timing.h"
#include "reedid/transforms.h"
#include "reedid/two_displays.h"
#include "reedid/version.h"
#include "reedid/vesa.h"

#endif
