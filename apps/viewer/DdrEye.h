// Measure > DDR Eye from Sets: a DQ and its strobe chosen among the drawn
// sets, folded into eyes when they are waveforms in time, and measured as
// plotvane-render --measure measures them.
#pragma once

class CChartPointDArray;

namespace plotvane::viewer
{

class ViewerFrame;

// The dialog, the eye chart in place of the sets and the margins told.
void AskDdrEye(ViewerFrame& frame);

// True when X falls back somewhere: an eye folded already, run after run.
bool IsFoldedEye(const CChartPointDArray& set);

// A strobe's period as the median time between its rising crossings of the
// middle of its swing; 0 when it rises fewer than twice.
double StrobePeriod(const CChartPointDArray& strobe);

} // namespace plotvane::viewer
