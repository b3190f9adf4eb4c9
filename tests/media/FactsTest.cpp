#include "media_client/AudioInfo.h"
#include "media_client/ByteCount.h"
#include "media_client/ImageInfo.h"
#include "support/TestCase.h"
