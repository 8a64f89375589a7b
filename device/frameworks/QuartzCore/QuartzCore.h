// QuartzCore, as far as the library calls it.
#pragma once

#import <QuartzCore/CALayer.h>
