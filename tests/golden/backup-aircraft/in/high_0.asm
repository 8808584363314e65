high
