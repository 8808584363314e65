frame of now
