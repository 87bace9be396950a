// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <QMap>
#include <QString>
#include <QStringList>

namespace IPSERDESIP {

class Message;
class serdes;

// What stands in the way of a request that the model refused, in the user's
// words: one sentence per row of `refused` that cannot be placed beside the
// instances in `holders` (by instance name) and the request's own earlier
// rows. A sentence names the line, the element in its way (the line itself,
// the reference input, a PLL or a mux) and who holds that element at which
// frequency, from which source or at which rate, for example "Q0 Lane1 TX
// cannot reach Q0 REFCLK1: Q0 QPLL0 runs from Q0 REFCLK0 at 10.3125 Gbps for
// xaui_0."
//
// The model keeps no record of who holds what, so the rows are placed again
// on a copy made from the holders' requests and their routes in the model's
// route table, in the order and by the rules of addItem. That is why the
// answer is the same straight after the refusal, with the request's partial
// reservations still in the model, and after they were released; the model is
// not changed. Where two requests took one line, the table keeps one route
// and the other is found again from the model's counts and selections, so a
// release must leave those as they were before the request. Rows past the one
// that the model stopped at are placed on as if it had gone on, and get a
// sentence of their own when they fail too.
//
// Empty when the request's rows differ in length, or when every row fits;
// the caller keeps the model's own words then.
SERDESIP_TEST_EXPORT QStringList explainRefusal(serdes *model, const Message &refused,
                                                const QMap<QString, Message *> &holders);

} // namespace IPSERDESIP
