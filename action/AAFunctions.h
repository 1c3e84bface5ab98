#pragma once
// Every evaluator class of the function library, one header per family.
// Include the family you need; this header is for the spelling tables and
// for tests that reach all of them.
#include "AACollect.h"
#include "AACompositeFor.h"
#include "AACreate.h"
#include "AADate.h"
#include "AALinkTo.h"
#include "AANumFun.h"
#include "AAOperators.h"
#include "AARGB.h"
#include "AASetFun.h"
#include "AATransformer.h"
#include "AAType.h"
#include "AAUnaryWithTarget.h"
#include "AAValue.h"
