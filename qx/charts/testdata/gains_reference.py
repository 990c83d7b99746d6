#!/usr/bin/python3
"""Writes gains_reference.txt: scored cases and the gains tables, areas under
the ROC curve and classification counts that the chart tests expect of them.

The gains tables are computed here with numpy from their definition (cases
ranked by descending score; a group of tied scores goes whole to the quantile
floor((B + G/2) / W * n), B the weight ranked above it, G its own, W the
total). The area under the curve, the confusion matrix and the accuracies come
from scikit-learn. Weights are multiples of 0.25, so that every sum of weights
is exact and the quantile cuts can't depend on the order of summation.

Run by hand (Debian: python3-sklearn, python3-numpy); never in CI:
    /usr/bin/python3 gains_reference.py > gains_reference.txt
"""
import numpy as np
from sklearn.metrics import accuracy_score, confusion_matrix, recall_score, roc_auc_score

rng = np.random.default_rng(20240601)
TARGET = 1  # the category whose gains are charted


def gains(score, response, weight, n):
    order = np.argsort(-score, kind="stable")
    s, r, w = score[order], response[order], weight[order]
    total = w.sum()
    cases = np.zeros(n)
    resp = np.zeros(n)
    above = 0.0
    for value in np.unique(s)[::-1]:
        group = s == value
        g = w[group].sum()
        q = min(n - 1, int((above + 0.5 * g) / total * n))
        cases[q] += g
        resp[q] += (w[group] * r[group]).sum()
        above += g
    cum_cases, cum_resp = np.cumsum(cases), np.cumsum(resp)
    overall = cum_resp[-1] / cum_cases[-1]
    with np.errstate(invalid="ignore", divide="ignore"):
        rate = resp / cases
        rows = np.column_stack([cases, resp, rate, 100 * cum_cases / cum_cases[-1],
                                100 * cum_resp / cum_resp[-1], cum_resp / cum_cases / overall,
                                100 * rate / overall])
    return rows


def emit(kind, rows):
    for q, row in enumerate(rows):
        print(kind, len(rows), q + 1, " ".join("nan" if np.isnan(v) else repr(float(v)) for v in row))


# Classifier: three categories, a score for category 1 rounded to two
# decimals (so many ties), weights 0.25 to 4.
n = 2000
observed = rng.choice(3, size=n, p=[0.5, 0.3, 0.2])
score = np.round(np.clip(0.3 + 0.25 * (observed == TARGET) + 0.2 * rng.standard_normal(n), 0, 1), 2)
predicted = np.where(score > 0.5, TARGET, np.where(rng.random(n) < 0.7, observed, rng.choice(3, size=n)))
weight = rng.integers(1, 17, size=n) / 4.0
print("# scored cases and expected values; written by gains_reference.py")
for i in range(n):
    print("class", repr(float(score[i])), observed[i], predicted[i], repr(float(weight[i])))

# Regression: amounts of one sign with many zeros, predictions to one
# decimal (ties), weights 0.25 to 3.
m = 1500
x = rng.random(m)
amount = np.round(np.where(rng.random(m) < 0.3, 0.0, 100 * x + 30 * rng.random(m)), 2)
pred = np.round(10 * x + rng.standard_normal(m), 1)
rweight = rng.integers(1, 13, size=m) / 4.0
for i in range(m):
    print("reg", repr(float(pred[i])), repr(float(amount[i])), repr(float(rweight[i])))

response = (observed == TARGET).astype(float)
ones = np.ones(n)
for quantiles in (10, 7):
    emit("classgains", gains(score, response, weight, quantiles))
    emit("unitgains", gains(score, response, ones, quantiles))
    emit("reggains", gains(pred, amount, rweight, quantiles))
print("auc", repr(roc_auc_score(response, score, sample_weight=weight)))
print("unitauc", repr(roc_auc_score(response, score)))
labels = [0, 1, 2]
cm = confusion_matrix(observed, predicted, labels=labels, sample_weight=weight)
for i in labels:
    for j in labels:
        print("confusion", i, j, repr(float(cm[i, j])))
print("accuracy", repr(float(accuracy_score(observed, predicted, sample_weight=weight))))
for k, value in enumerate(recall_score(observed, predicted, labels=labels, average=None,
                                       sample_weight=weight)):
    print("classaccuracy", k, repr(float(value)))
