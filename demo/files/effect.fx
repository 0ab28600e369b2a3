[Library Effect]
Lifetime=5
Version=1.00
Radius=-1
Priority=0

[Properties]
Intensity=1

[Emitter.0]
Lifetime=0.00, 0.00
Delay=0.00, 0.00
Bounce=0.00

[Particle.0]
Lifetime=0.80, 1.20
Type=19
Texture=fx_dust.bmp
