frame
