frame
  	last without an end


