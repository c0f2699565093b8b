#!/bin/sh
# Steps that pass, are skipped and fail, for the test of the runner.
echo "step: first"
echo "skipped: antenna: this machine has none"
echo "step: second"
echo "what went wrong"
exit 3
