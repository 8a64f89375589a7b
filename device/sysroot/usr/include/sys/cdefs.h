// Linkage brackets for the C headers in this folder.
#pragma once

#define __BEGIN_DECLS extern "C" {
#define __END_DECLS }
