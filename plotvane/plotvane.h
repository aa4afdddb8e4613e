// Every public class of the plotvane library.
#pragma once

#include "foundation/ArrayRecord.h"
#include "foundation/Dec.h"
#include "foundation/Exceptions.h"
#include "foundation/ExPtrArray.h"
#include "foundation/Geometry.h"
#include "foundation/MFCArchive.h"
#include "foundation/MFCArray.h"
#include "foundation/MFCFile.h"
#include "foundation/MFCObject.h"
#include "foundation/MFCString.h"
#include "foundation/NSet.h"
#include "foundation/StringEx.h"
#include "foundation/TLUtility.h"
#include "foundation/Types.h"
#include "foundation/ValueArrays.h"
#include "foundation/ValueTypes.h"
