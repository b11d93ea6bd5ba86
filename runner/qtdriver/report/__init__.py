"""The page of a run, which shows its tests, their steps and their pictures."""
