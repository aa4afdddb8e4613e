#include "view/GLChartView.h"
